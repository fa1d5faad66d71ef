#ifndef KVL_DEMO_H
#define KVL_DEMO_H

#include <SDL/SDL.h>

#include <string>

class Effect;

// The driver of one run: load, init, run, dispose.
class Demo {
public:
    Demo(int argc, char** argv);
    ~Demo();

    void addEffect(std::string name, Effect* effect);
    bool load();
    void init();
    void run();
    bool dispose();
    bool isValid() const;
    Demo* debug(bool on);

    void keyEvents();
    void drawPauseSymbol();

private:
    SDL_Event event;
    std::string scriptFile;
    std::string scriptPath;
    std::string errorMessage;
    bool invalid;
    bool debugFlag;
};

#endif
