#ifndef KVL_DEMO_H
#define KVL_DEMO_H

#include <SDL/SDL.h>

#include <string>

class Effect;
class ResourceLoader;

// The driver of one run. main() builds one Demo, registers the effect
// classes, and calls load, init, run and dispose in that order. A failed
// load makes init and run do nothing; dispose always runs and reports.
class Demo {
public:
    Demo(int argc, char** argv);
    ~Demo();

    void addEffect(std::string name, Effect* effect);
    // True means failure.
    bool load();
    void init();
    void run();
    bool dispose();
    bool isValid() const;
    Demo* debug(bool on);

    void keyEvents();
    void drawPauseSymbol();

    // The pieces of run(), public so that the frame can be driven with
    // explicit clock values.
    void startClock();
    void frame(unsigned int now);
    void reportDuration() const;

    std::string getScriptFile() const;
    std::string getScriptPath() const;
    ResourceLoader* getLoader() const;

private:
    ResourceLoader* loader;
    SDL_Event event;
    std::string scriptFile;
    std::string scriptPath;
    std::string errorMessage;
    bool invalid;
    bool debugFlag;
    float cameraSpeed;
    bool pitchUp;
    bool pitchDown;
    bool headingUp;
    bool headingDown;
    bool moveBack;
    bool moveForward;
    bool pauseShown;
    unsigned int pauseChangedAt;
};

#endif
