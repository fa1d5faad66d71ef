#ifndef KVL_KVLDEMOSYS_H
#define KVL_KVLDEMOSYS_H

#include "graphics/Camera.h"
#include "graphics/Lightsource.h"
#include "runtime/KVLTime.h"

#include <SDL/SDL.h>
#include <SDL/SDL_mixer.h>

#include <string>

class ActionPool;
class Binary;
class Data;
class DataAnimationPool;
class DataBinaryPool;
class DataEffectPool;
class DataEventPool;
class DataFBOPool;
class DataObjectPool;
class DataShaderPool;
class DataTexturePool;
class GLExtensions;
class Parameters;
class Texture;
class Timeline;

// The one global state of a run: pools, screen, clock, music, stores and
// timeline. Every part of the player reaches shared state through these
// statics by name; there is no context object to pass around.
class KVLDemosys {
public:
    static double frustumWidth;
    static double frustumHeight;
    static double frustumNear;
    static double frustumFar;
    static bool cameraActive;

    static DataObjectPool* objectPool;
    static DataTexturePool* texturePool;
    static DataAnimationPool* animationPool;
    static DataEffectPool* effectTemplatePool;
    static DataEffectPool* effectPool;
    static DataEventPool* eventPool;
    static DataBinaryPool* binaryPool;
    static DataShaderPool* shaderPool;
    static DataFBOPool* fboPool;

    static std::string message;
    static unsigned int startTime;
    static KVLTime stopTime;
    static unsigned int currentTime;
    static unsigned int pauseTime;
    static bool pause;
    static unsigned int frames;
    static unsigned int offset;
    static SDL_Surface* screen;
    static SDL_Event keyPressed;

    // Music. SDL_mixer plays the one piece: `soundsystem` is true while the
    // audio device is open, `sound` is the loaded music and `soundchannel`
    // is 0 once the music was started on its channel, -1 before.
    static bool music;
    static Mix_Music* sound;
    static bool soundsystem;
    static int soundchannel;

    static bool quit;
    static int screenHeight;
    static int screenWidth;
    static Camera camera;
    static Lightsource light;
    static bool system_error;
    static ActionPool* action;
    static Parameters* parameters;
    static Parameters* effects;
    static Data* data;
    static Timeline* timeline;
    static GLExtensions* glExtensions;

    // Clock.
    static void updateTime(unsigned int now);
    static unsigned int getMillisecondsElapsed();
    static double getFPS();
    static unsigned int getStartTime();
    static void setStartTime(unsigned int ignored);
    static bool stopTimer();
    static bool startTimer();
    static void setQuit(bool value);
    static bool checkQuit();

    // Screen and view.
    static bool screenOpen(int width, int height, int bpp, int opengl, int fullscreen);
    static bool screenOpen(int width, int height, int bpp, int opengl, char* title, char* icon);
    static void setView();

    // Messages and diagnostics.
    static std::string getMessage();
    static void showMessage(std::string text);
    static void showMessage();
    static bool glErrPrint(std::string location);
    static bool checkKeyPress(int key);

    // Music.
    static bool soundInit(char* filename);
    static bool soundInitPlay(char* filename);
    static bool soundPlay();
    static bool soundPlay(unsigned int milliseconds);
    static bool soundStop();
    static bool soundShutdown();

    static Binary* loadBinary(std::string path);
    // A new texture that the caller owns, or null when the file does not open.
    static Texture* loadTexture(std::string filename, unsigned int type, bool mipmap);
    static void shutDown();

    // Puts every static back to its start value, so that tests can run
    // several demos in one process.
    static void resetState();
};

#endif
