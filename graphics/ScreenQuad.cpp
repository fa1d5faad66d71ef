#include "graphics/ScreenQuad.h"

#include <GL/glew.h>

void ScreenQuad::pushIdentities() {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
}

void ScreenQuad::popIdentities() {
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

void ScreenQuad::draw() {
    glBegin(GL_QUADS);
    glTexCoord2d(0, 0);
    glVertex2f(-1, -1);
    glTexCoord2d(1, 0);
    glVertex2f(1, -1);
    glTexCoord2d(1, 1);
    glVertex2f(1, 1);
    glTexCoord2d(0, 1);
    glVertex2f(-1, 1);
    glEnd();
}
