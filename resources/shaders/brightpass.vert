#version 110
// Screen-filling quad of a framebuffer draw: positions come in clip space.
void main() {
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_Position = ftransform();
}
