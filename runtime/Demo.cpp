#include "runtime/Demo.h"

#include "runtime/KVLDemosys.h"
#include "graphics/Texture.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLTime.h"
#include "runtime/ResourceLoader.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"
#include "timeline/Timeline.h"

#include <GL/glew.h>

#include <iostream>

Demo::Demo(int, char** argv)
    : loader(nullptr), scriptFile("demoscript.txt"), scriptPath("resources/scripts/"), invalid(false),
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
    loader = new ResourceLoader(scriptPath + scriptFile);
    // The pools must exist before main registers the effect classes.
    invalid = !loader->createDataPools();
}

Demo::~Demo() { delete loader; }

void Demo::addEffect(std::string name, Effect* effect) {
    KVLDemosys::effectTemplatePool->addEffect(name, effect);
}

bool Demo::load() {
    if (invalid) {
        return false;
    }
    invalid = !loader->parseConfig();
    if (invalid) {
        return invalid;
    }
    invalid = !loader->initScreen();
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
    invalid = !loader->loadDataFiles();
    if (invalid) {
        return invalid;
    }
    invalid = !loader->loadSound();
    if (invalid) {
        return invalid;
    }
    invalid = !loader->createEffectObjects();
    if (invalid) {
        return invalid;
    }
    invalid = !loader->createTimeline();
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
    loader->initDemo();
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
    KVLDemosys::light.enable();
    KVLDemosys::light.update();
    KVLDemosys::startTime = SDL_GetTicks();
    // Without a stop time in the script a run ends after 30 minutes.
    ParameterGroup* system =
        (KVLDemosys::parameters != nullptr) ? KVLDemosys::parameters->getGroup("system") : nullptr;
    if (system != nullptr && system->exist("stop")) {
        KVLDemosys::stopTime.setTimeAsString(system->getParameter("stop"));
    } else {
        KVLDemosys::stopTime.setMinutes(30);
    }
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
    KVLDemosys::timeline->watch();
    // No key sets the motion flags; the branch runs on them all the same, so
    // a binding can be added without touching the loop.
    if (KVLDemosys::cameraActive) {
        if (pitchUp) {
            KVLDemosys::camera.changePitch(cameraSpeed);
        }
        if (pitchDown) {
            KVLDemosys::camera.changePitch(-cameraSpeed);
        }
        if (headingUp) {
            KVLDemosys::camera.changeHeading(cameraSpeed);
        }
        if (headingDown) {
            KVLDemosys::camera.changeHeading(-cameraSpeed);
        }
        if (moveForward) {
            KVLDemosys::camera.changeVelocity(cameraSpeed / 200.0f);
        }
        if (moveBack) {
            KVLDemosys::camera.changeVelocity(cameraSpeed / -200.0f);
        }
        KVLDemosys::camera.setGLMatrixes();
    }
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
    bool loaderFailed = !loader->isValid();
    if (loaderFailed) {
        errorMessage += "ResourceLoader:\n";
        errorMessage += "Message :\n";
        errorMessage += loader->getErrorMessage();
        errorMessage += "\n";
        std::cout << errorMessage << std::endl;
    }
    // With a failed loader the text therefore stands twice in the log.
    if (invalid || loaderFailed) {
        KVLDemosys::showMessage(errorMessage);
    }
    loader->print();
    loader->dispose();
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
    // Without a loaded icon the quad is drawn plain white.
    Texture* icon = (KVLDemosys::texturePool != nullptr)
                        ? KVLDemosys::texturePool->getTexture("sysicon_pause")
                        : nullptr;
    if (icon != nullptr) {
        icon->bind();
    }
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
    if (icon != nullptr) {
        icon->release();
    }
    glDisable(GL_COLOR_MATERIAL);
}

std::string Demo::getScriptFile() const { return scriptFile; }

std::string Demo::getScriptPath() const { return scriptPath; }

ResourceLoader* Demo::getLoader() const { return loader; }
