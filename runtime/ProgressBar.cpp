#include "runtime/ProgressBar.h"

#include <GL/glew.h>
#include <SDL/SDL.h>

ProgressBar::ProgressBar() : ProgressBar(0.125f, 1.8f, -0.9f, 1) {}

ProgressBar::ProgressBar(int maxTicks) : ProgressBar(0.125f, 1.8f, -0.9f, maxTicks) {}

ProgressBar::ProgressBar(float height, float width, float ypos, int maxTicks)
    : height(height), width(width), ypos(ypos), progress(0.0f), maxTicks(maxTicks), tickCount(0) {}

void ProgressBar::tick() {
    if (tickCount == maxTicks) {
        return;
    }
    progress = static_cast<float>(tickCount) / static_cast<float>(maxTicks);
    tickCount++;
    draw();
}

namespace {

void quad(float left, float bottom, float right, float top) {
    glBegin(GL_QUADS);
    glVertex3f(left, bottom, 0.0f);
    glVertex3f(right, bottom, 0.0f);
    glVertex3f(right, top, 0.0f);
    glVertex3f(left, top, 0.0f);
    glEnd();
}

} // namespace

void ProgressBar::draw() {
    const float left = -0.5f * width;
    const float right = 0.5f * width;
    const float bottom = ypos - 0.5f * height;
    const float top = ypos + 0.5f * height;
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor3f(1, 1, 1);
    quad(left, bottom, right, top);
    glColor3f(0, 0, 0);
    quad(left + 0.01f, bottom + 0.012f, right - 0.01f, top - 0.012f);
    glColor3f(1, 1, 1);
    const float fillLeft = left + 0.015f;
    quad(fillLeft, bottom + 0.019f, fillLeft + (width - 0.03f) * progress, top - 0.019f);
    SDL_GL_SwapBuffers();
}

float ProgressBar::getProgress() const { return progress; }

int ProgressBar::getTickCount() const { return tickCount; }

int ProgressBar::getMaxTicks() const { return maxTicks; }
