#include "runtime/Demo.h"

#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <GL/glew.h>

#include <iostream>

namespace {

// The window of a run before the script can size it.
const int FIXED_WIDTH = 800;
const int FIXED_HEIGHT = 600;
const int FIXED_BPP = 32;

} // namespace

Demo::Demo(int, char** argv)
    : scriptFile("demoscript.txt"), scriptPath("resources/scripts/"), invalid(false),
      debugFlag(false), cameraSpeed(1.0f), pitchUp(false), pitchDown(false), headingUp(false),
      headingDown(false), moveBack(false), moveForward(false), pauseShown(false),
      pauseChangedAt(0) {
    // The argument is a file name inside the scripts directory, not a path;
    // an empty argument counts as none.
    if (argv != nullptr && argv[0] != nullptr && argv[1] != nullptr && argv[1][0] != '\0') {
        scriptFile = argv[1];
    }
    if (debugFlag) {
        std::cout << "Script : " << scriptPath << scriptFile << std::endl;
    }
    if (KVLDemosys::action == nullptr) {
        KVLDemosys::action = new ActionPool();
    }
}

Demo::~Demo() {}

void Demo::addEffect(std::string, Effect* effect) { delete effect; }

bool Demo::openScreen() {
    if (!KVLDemosys::screenOpen(FIXED_WIDTH, FIXED_HEIGHT, FIXED_BPP, 1, 0)) {
        errorMessage = KVLDemosys::getMessage();
        return false;
    }
    return true;
}

bool Demo::load() {
    if (invalid) {
        return false;
    }
    invalid = !openScreen();
    if (invalid) {
        return invalid;
    }
    GLenum glewResult = glewInit();
    if (glewResult != GLEW_OK) {
        errorMessage = std::string("Error initializing glew\n") +
                       reinterpret_cast<const char*>(glewGetErrorString(glewResult));
        invalid = true;
        return invalid;
    }
    if (!GLEW_VERSION_2_0) {
        errorMessage = "No OpenGL 2.0 support found!\nYour graphics card is probably crappy\nor "
                       "you are using drivers from the stoneage.";
        invalid = true;
        return invalid;
    }
    return invalid;
}

void Demo::init() {
    if (invalid) {
        return;
    }
    glClearColor(0, 0, 0, 0);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    KVLDemosys::setView();
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_DEPTH_TEST);
    pitchUp = false;
    pitchDown = false;
    headingUp = false;
    headingDown = false;
    moveBack = false;
    moveForward = false;
    cameraSpeed = 1.0f;
    KVLDemosys::cameraActive = false;
}

void Demo::startClock() {
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glEnable(GL_DEPTH_TEST);
    KVLDemosys::startTime = SDL_GetTicks();
    // Without a stop time in the script a run ends after 30 minutes.
    KVLDemosys::stopTime.setMinutes(30);
}

void Demo::frame(unsigned int now) {
    KVLDemosys::updateTime(now);
    if (KVLDemosys::getMillisecondsElapsed() > KVLDemosys::stopTime.getTicks()) {
        KVLDemosys::setQuit(true);
    }
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    KVLDemosys::setView();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    keyEvents();
    KVLDemosys::action->execute(KVLDemosys::getMillisecondsElapsed());
    KVLDemosys::glErrPrint("main()");
    drawPauseSymbol();
    glFlush();
    SDL_GL_SwapBuffers();
    KVLDemosys::frames++;
}

void Demo::reportDuration() const {
    KVLTime duration(KVLDemosys::getMillisecondsElapsed());
    std::cout << "Duration : " << duration.toString() << std::endl;
    std::cout << "FPS = " << static_cast<float>(KVLDemosys::getFPS()) << std::endl;
}

void Demo::run() {
    if (invalid) {
        return;
    }
    startClock();
    while (!KVLDemosys::checkQuit()) {
        frame(SDL_GetTicks());
    }
    reportDuration();
}

bool Demo::dispose() {
    std::cout << "[Shutting Down]" << std::endl;
    if (invalid) {
        KVLDemosys::showMessage(errorMessage);
    }
    std::cout << "KVLDemosys::shutdown()" << std::endl;
    KVLDemosys::shutDown();
    std::cout << "[Application End]" << std::endl;
    return true;
}

bool Demo::isValid() const { return !invalid; }

Demo* Demo::debug(bool on) {
    debugFlag = on;
    return this;
}

// Only key presses count, and only two keys; everything else, the window's
// close request included, is dropped.
void Demo::keyEvents() {
    while (SDL_PollEvent(&event)) {
        if (event.type != SDL_KEYDOWN) {
            continue;
        }
        if (event.key.keysym.sym == SDLK_ESCAPE) {
            KVLDemosys::setQuit(true);
        } else if (event.key.keysym.sym == SDLK_SPACE) {
            if (KVLDemosys::pause) {
                KVLDemosys::startTimer();
                std::cout << "--> Star Timeline" << std::endl;
            } else {
                KVLDemosys::stopTimer();
                std::cout << "--> Stop Timeline" << std::endl;
            }
        }
    }
}

// Drawn in whatever projection the frame's effects left: the symbol sits at
// z = 0 and shows where the last effect leaves a flat projection.
void Demo::drawPauseSymbol() {
    if (pauseShown != KVLDemosys::pause) {
        pauseChangedAt = SDL_GetTicks();
        pauseShown = !pauseShown;
    }
    if (!pauseShown) {
        return;
    }
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glEnable(GL_COLOR_MATERIAL);
    glColor4f(1, 1, 1, 1);
    glTranslatef(0.9f, -0.86f, 0.0f);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2f(-0.075f, -0.095f);
    glTexCoord2f(1, 0);
    glVertex2f(0.075f, -0.095f);
    glTexCoord2f(1, 1);
    glVertex2f(0.075f, 0.095f);
    glTexCoord2f(0, 1);
    glVertex2f(-0.075f, 0.095f);
    glEnd();
    glDisable(GL_COLOR_MATERIAL);
}

std::string Demo::getScriptFile() const { return scriptFile; }

std::string Demo::getScriptPath() const { return scriptPath; }
