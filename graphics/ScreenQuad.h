#ifndef KVL_SCREENQUAD_H
#define KVL_SCREENQUAD_H

// The quad that covers the whole viewport, and the identity matrices it is
// drawn under: what a texture or a render target drawn full screen needs.
class ScreenQuad {
public:
    // Pushes the projection and the modelview matrix and loads the identity
    // into both; the matrix mode is left at GL_MODELVIEW.
    static void pushIdentities();
    // Pops both again; the matrix mode is left at GL_MODELVIEW.
    static void popIdentities();
    // One GL_QUADS primitive: texture coordinate (0, 0) at vertex (-1, -1),
    // (1, 0) at (1, -1), (1, 1) at (1, 1), (0, 1) at (-1, 1), by glTexCoord2d
    // and glVertex2f, so z is 0. No other state is touched.
    static void draw();
};

#endif
