#include "runtime/KVLDemosys.h"

#include "graphics/Image.h"
#include "graphics/Texture.h"
#include "runtime/Binary.h"
#include "runtime/ResourceLoader.h"
#include "script/KVLUtils.h"
#include "script/File.h"
#include "timeline/ActionPool.h"
#include "timeline/Timeline.h"

#include <GL/glew.h>
#include <GL/glu.h>

#include <iostream>

#include <vorbis/vorbisfile.h>

double KVLDemosys::frustumWidth = 1.0;
double KVLDemosys::frustumHeight = 1.0;
double KVLDemosys::frustumNear = 1.0;
double KVLDemosys::frustumFar = 80.0;
bool KVLDemosys::cameraActive = true;

DataObjectPool* KVLDemosys::objectPool = nullptr;
DataTexturePool* KVLDemosys::texturePool = nullptr;
DataAnimationPool* KVLDemosys::animationPool = nullptr;
DataEffectPool* KVLDemosys::effectTemplatePool = nullptr;
DataEffectPool* KVLDemosys::effectPool = nullptr;
DataEventPool* KVLDemosys::eventPool = nullptr;
DataBinaryPool* KVLDemosys::binaryPool = nullptr;
DataShaderPool* KVLDemosys::shaderPool = nullptr;
DataFBOPool* KVLDemosys::fboPool = nullptr;

std::string KVLDemosys::message;
unsigned int KVLDemosys::startTime = 0;
KVLTime KVLDemosys::stopTime;
unsigned int KVLDemosys::currentTime = 0;
unsigned int KVLDemosys::pauseTime = 0;
bool KVLDemosys::pause = false;
unsigned int KVLDemosys::frames = 0;
unsigned int KVLDemosys::offset = 0;
SDL_Surface* KVLDemosys::screen = nullptr;
SDL_Event KVLDemosys::keyPressed;

bool KVLDemosys::music = false;
Mix_Music* KVLDemosys::sound = nullptr;
bool KVLDemosys::soundsystem = false;
int KVLDemosys::soundchannel = -1;

bool KVLDemosys::quit = false;
int KVLDemosys::screenHeight = 0;
int KVLDemosys::screenWidth = 0;
Camera KVLDemosys::camera;
Lightsource KVLDemosys::light;
bool KVLDemosys::system_error = false;
ActionPool* KVLDemosys::action = nullptr;
Parameters* KVLDemosys::parameters = nullptr;
Parameters* KVLDemosys::effects = nullptr;
Data* KVLDemosys::data = nullptr;
Timeline* KVLDemosys::timeline = nullptr;
GLExtensions* KVLDemosys::glExtensions = nullptr;

// ---------------------------------------------------------------- clock

void KVLDemosys::updateTime(unsigned int now) {
    currentTime = now;
    if (pause) {
        // Slide the start forward by the wall time that passed, so the demo
        // clock stands still while frames go on being drawn.
        startTime = startTime + now - pauseTime;
        pauseTime = now;
    }
}

unsigned int KVLDemosys::getMillisecondsElapsed() {
    // Before a timeline exists there is no offset to add.
    unsigned int o = (timeline != nullptr) ? timeline->getOffset() : 0;
    if (o + startTime < o) {
        currentTime = startTime;
        return o;
    }
    return currentTime - startTime + o;
}

double KVLDemosys::getFPS() {
    unsigned int o = (timeline != nullptr) ? timeline->getOffset() : 0;
    unsigned int d = getMillisecondsElapsed() - o;
    if (d == 0) {
        return 0.0;
    }
    return frames / static_cast<float>(d / 1000.0);
}

unsigned int KVLDemosys::getStartTime() { return startTime; }

void KVLDemosys::setStartTime(unsigned int) { startTime = SDL_GetTicks(); }

bool KVLDemosys::stopTimer() {
    pause = true;
    pauseTime = currentTime;
    return soundStop();
}

// The music does not continue from where it stopped: it is placed where the
// clock stands, which corrects any drift at every resume.
bool KVLDemosys::startTimer() {
    pause = false;
    return soundPlay(getMillisecondsElapsed());
}

void KVLDemosys::setQuit(bool value) { quit = value; }

bool KVLDemosys::checkQuit() { return quit; }

// ---------------------------------------------------------------- screen

bool KVLDemosys::screenOpen(int width, int height, int bpp, int opengl, int fullscreen) {
    screenWidth = width;
    screenHeight = height;
    if (SDL_Init(SDL_INIT_VIDEO) == -1) {
        message = std::string("Failed to initialize SDL!\n") + SDL_GetError();
        return false;
    }
    if (opengl == 1 && (fullscreen == 0 || fullscreen == 1)) {
        SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
        SDL_GL_SetAttribute(SDL_GL_SWAP_CONTROL, 1);
        Uint32 flags = SDL_OPENGL | SDL_HWSURFACE | (fullscreen == 1 ? SDL_FULLSCREEN : 0);
        screen = SDL_SetVideoMode(width, height, bpp, flags);
    } else if (opengl == 0 && (fullscreen == 0 || fullscreen == 1)) {
        Uint32 flags = SDL_DOUBLEBUF | SDL_HWSURFACE | (fullscreen == 1 ? SDL_FULLSCREEN : 0);
        screen = SDL_SetVideoMode(width, height, bpp, flags);
    }
    SDL_ShowCursor(0);
    if (screen == nullptr) {
        message = std::string("Failed to set screenmode!\n") + SDL_GetError();
        return false;
    }
    return true;
}

bool KVLDemosys::screenOpen(int width, int height, int bpp, int opengl, char* title,
                            char* icon) {
    screenWidth = width;
    screenHeight = height;
    if (SDL_Init(SDL_INIT_VIDEO) == -1) {
        message = std::string("Failed to initialize SDL!\n") + SDL_GetError();
        return false;
    }
    if (opengl == 1) {
        SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
        SDL_GL_SetAttribute(SDL_GL_SWAP_CONTROL, 1);
        SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 32);
        screen = SDL_SetVideoMode(width, height, bpp, SDL_OPENGL | SDL_HWSURFACE);
        SDL_WM_SetCaption(title, icon);
    } else if (opengl == 0) {
        screen = SDL_SetVideoMode(width, height, bpp, SDL_DOUBLEBUF | SDL_HWSURFACE);
        SDL_WM_SetCaption(title, icon);
    }
    SDL_ShowCursor(0);
    if (screen == nullptr) {
        message = std::string("Failed to set screenmode!\n") + SDL_GetError();
        return false;
    }
    return true;
}

void KVLDemosys::setView() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    // The 64-bit float just below one half, on purpose.
    const double h = 0.49999999999999994;
    const double w = h * screenWidth / screenHeight;
    // The script's values are the only source. Before a script is loaded
    // (a bare window in tests) the planes stay as they are.
    if (parameters != nullptr) {
        frustumNear = KVLUtils::string2Float(ResourceLoader::systemValue("screen", "near"));
        frustumFar = KVLUtils::string2Float(ResourceLoader::systemValue("screen", "far"));
    }
    frustumWidth = w;
    frustumHeight = h;
    glViewport(0, 0, screenWidth, screenHeight);
    glFrustum(-frustumWidth, frustumWidth, -frustumHeight, frustumHeight, frustumNear, frustumFar);
    glMatrixMode(GL_MODELVIEW);
}

// ---------------------------------------------------------------- messages

std::string KVLDemosys::getMessage() { return message; }

void KVLDemosys::showMessage(std::string text) { std::cout << text << std::endl; }

void KVLDemosys::showMessage() {}

bool KVLDemosys::glErrPrint(std::string location) {
    GLenum code = glGetError();
    if (code == GL_NO_ERROR) {
        return true;
    }
    // A lost context keeps answering with an error; do not loop forever.
    for (int guard = 0; code != GL_NO_ERROR && guard < 64; guard++) {
        std::cout << "[GL_ERROR LOCATION = '" << location << "']" << std::endl;
        const GLubyte* text = gluErrorString(code);
        if (text != nullptr) {
            std::cout << "[GL_ERROR CODE " << code << "] '" << reinterpret_cast<const char*>(text)
                      << "' in ->" << std::endl;
        } else {
            std::cout << "[GL_ERROR CODE UNKNOWN]" << std::endl;
        }
        code = glGetError();
    }
    if (action != nullptr) {
        std::cout << action->toString() << std::flush;
    }
    system_error = true;
    return false;
}

bool KVLDemosys::checkKeyPress(int key) {
    while (SDL_PollEvent(&keyPressed)) {
        if (keyPressed.type == SDL_KEYDOWN && keyPressed.key.keysym.sym == key) {
            return true;
        }
    }
    return false;
}

// ---------------------------------------------------------------- music
//
// SDL_mixer plays the music. The steps keep the shape of a sound system with
// a channel: the channel handle is valid from a start until a stop or until
// the music has played out, and a test of an invalid handle is a failure.

namespace {

const int MUSIC_RATE = 44100;
const int MUSIC_CHUNK = 1024;

std::string musicFile;
// In milliseconds; 0 when the file does not tell (not Ogg Vorbis).
double musicLength = 0.0;

double lengthOf(const char* filename) {
    OggVorbis_File vorbis;
    if (ov_fopen(filename, &vorbis) != 0) {
        return 0.0;
    }
    double seconds = ov_time_total(&vorbis, -1);
    ov_clear(&vorbis);
    return seconds > 0.0 ? seconds * 1000.0 : 0.0;
}

bool openAudioDevice(const char* filename, bool logCode) {
    int created = SDL_InitSubSystem(SDL_INIT_AUDIO);
    if (created != 0) {
        if (logCode) {
            std::cout << "Failed to create the FMOD System object! Error code: " << created
                      << std::endl;
        } else {
            std::cout << "Failed to create the FMOD System object!" << std::endl;
        }
        KVLDemosys::message = "Failed to initialize FMOD!";
        return false;
    }
    if (!KVLDemosys::soundsystem) {
        if (Mix_OpenAudio(MUSIC_RATE, MIX_DEFAULT_FORMAT, 2, MUSIC_CHUNK) != 0) {
            std::cout << "Failed to initialize FMOD!" << std::endl;
            KVLDemosys::message = "Failed to initialize FMOD!";
            return false;
        }
        KVLDemosys::soundsystem = true;
    }
    if (KVLDemosys::sound != nullptr) {
        Mix_FreeMusic(KVLDemosys::sound);
    }
    KVLDemosys::sound = Mix_LoadMUS(filename);
    if (KVLDemosys::sound == nullptr) {
        KVLDemosys::message = "Failed to load soundfile!";
        return false;
    }
    musicFile = filename;
    musicLength = lengthOf(filename);
    return true;
}

// 0 while the channel plays, non-zero for an invalid handle.
int channelIsPlaying() {
    if (KVLDemosys::soundchannel < 0 || KVLDemosys::sound == nullptr || Mix_PlayingMusic() == 0) {
        KVLDemosys::soundchannel = -1;
        return 1;
    }
    return 0;
}

int channelStop() {
    Mix_HaltMusic();
    KVLDemosys::soundchannel = -1;
    return 0;
}

} // namespace

bool KVLDemosys::soundInit(char* filename) {
    std::cout << "KVLDemosys::soundInit()" << std::endl;
    if (!openAudioDevice(filename, true)) {
        return false;
    }
    music = true;
    return true;
}

bool KVLDemosys::soundInitPlay(char* filename) {
    if (!openAudioDevice(filename, false)) {
        return false;
    }
    Mix_PlayMusic(sound, 0);
    soundchannel = 0;
    music = true;
    return true;
}

bool KVLDemosys::soundPlay() {
    if (sound == nullptr) {
        message = "Failed to play sound!";
        return false;
    }
    Mix_PlayMusic(sound, 0);
    soundchannel = 0;
    return true;
}

// Never reports success: callers ignore the result, and a run started at a
// position is known to end its report with the failure text.
bool KVLDemosys::soundPlay(unsigned int milliseconds) {
    if (sound == nullptr) {
        message = "Failed to play sound!";
        return false;
    }
    // SDL_mixer's Ogg player keeps the unplayed rest of its last decoded
    // packet over a halt, and neither the rewind of a start nor a seek drops
    // it; a fresh load keeps the old position from sounding after a resume.
    Mix_FreeMusic(sound);
    sound = Mix_LoadMUS(musicFile.c_str());
    if (sound == nullptr) {
        message = "Failed to play sound!";
        return false;
    }
    // Start and seek under the audio lock, so no buffer from the beginning of
    // the piece is mixed before the jump.
    SDL_LockAudio();
    if (Mix_PlayMusic(sound, 0) != 0) {
        SDL_UnlockAudio();
        message = "Failed to play sound!";
        return false;
    }
    soundchannel = 0;
    // A seek behind the end fails inside SDL_mixer without a word and the
    // piece would play again from its start; there it ends at once instead.
    if (musicLength > 0.0 && milliseconds >= musicLength) {
        Mix_HaltMusic();
        SDL_UnlockAudio();
        return false;
    }
    if (Mix_SetMusicPosition(milliseconds / 1000.0) != 0) {
        SDL_UnlockAudio();
        message = "Failed to play sound from current position!";
        return false;
    }
    SDL_UnlockAudio();
    return false;
}

bool KVLDemosys::soundStop() {
    if (channelIsPlaying() != 0 || channelStop() != 0) {
        message = "Failed to stop playing sound!";
        return false;
    }
    return true;
}

// The sense of the result is the reverse of its neighbours: false when the
// music was stopped and the device released.
bool KVLDemosys::soundShutdown() {
    if (channelIsPlaying() == 0 && channelStop() == 0) {
        Mix_FreeMusic(sound);
        sound = nullptr;
        Mix_CloseAudio();
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        soundsystem = false;
        return false;
    }
    message = "Failed to shut down FMOD!";
    return true;
}

// ---------------------------------------------------------------- other

// Says nothing on failure: the caller words the message.
Binary* KVLDemosys::loadBinary(std::string path) {
    File file(path, 0);
    if (!file.exists()) {
        return nullptr;
    }
    return new Binary(file.getUnsigned());
}

Texture* KVLDemosys::loadTexture(std::string filename, unsigned int type, bool mipmap) {
    Image* image = new Image(filename);
    if (!image->exists()) {
        delete image;
        return nullptr;
    }
    GLuint id = 0;
    glGenTextures(1, &id);

    int width = image->getWidth();
    int height = image->getHeight();
    int bpp = image->getBpp();
    const unsigned char* pixels = image->getData();
    // Only 8-bit RGB and RGBA go up, and only with the pixels in hand: the
    // decoder may have given up before it made any.
    bool upload = (pixels != nullptr) && (bpp == 32 || bpp == 24);
    GLenum format = (bpp == 32) ? GL_RGBA : GL_RGB;
    GLint components = (bpp == 32) ? 4 : 3;
    // RGB rows are packed without padding; under the default alignment of 4
    // GL would read past the end of a picture whose rows are not a multiple
    // of four bytes long.
    GLint alignment = 4;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (type == GL_TEXTURE_1D) {
        glBindTexture(GL_TEXTURE_1D, id);
        glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        // The first row in memory, the last of the file.
        if (upload) {
            glTexImage1D(GL_TEXTURE_1D, 0, static_cast<GLint>(format), width, 0, format,
                         GL_UNSIGNED_BYTE, pixels);
        }
    } else if (type == GL_TEXTURE_2D) {
        glBindTexture(GL_TEXTURE_2D, id);
        if (mipmap) {
            // GL_LINEAR_MIPMAP_LINEAR is no magnification filter: GL refuses
            // it with an error that is reported below, and bind() sets the
            // right pair later. The order is kept on purpose.
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        } else {
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        }
        glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        if (upload && mipmap) {
            gluBuild2DMipmaps(GL_TEXTURE_2D, components, width, height, format, GL_UNSIGNED_BYTE,
                              pixels);
        } else if (upload) {
            glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), width, height, 0, format,
                         GL_UNSIGNED_BYTE, pixels);
        }
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);

    // A lost context keeps answering with an error; do not loop forever.
    GLenum code = glGetError();
    for (int guard = 0; code != GL_NO_ERROR && guard < 64; guard++) {
        const GLubyte* text = gluErrorString(code);
        std::cout << "[GL_ERROR] '" << (text != nullptr ? reinterpret_cast<const char*>(text) : "")
                  << "' in ->" << filename << std::endl;
        code = glGetError();
    }

    Texture* texture = new Texture(filename, id);
    texture->setSize(width, height);
    texture->setBPP(bpp);
    texture->setFileSize(image->getFileSize());
    texture->setType(type);
    texture->isMipmapped(mipmap);
    delete image;
    return texture;
}

void KVLDemosys::shutDown() {
    if (music) {
        soundShutdown();
    }
    SDL_Quit();
}

void KVLDemosys::resetState() {
    frustumWidth = 1.0;
    frustumHeight = 1.0;
    frustumNear = 1.0;
    frustumFar = 80.0;
    cameraActive = true;
    objectPool = nullptr;
    texturePool = nullptr;
    animationPool = nullptr;
    effectTemplatePool = nullptr;
    effectPool = nullptr;
    eventPool = nullptr;
    binaryPool = nullptr;
    shaderPool = nullptr;
    fboPool = nullptr;
    message.clear();
    startTime = 0;
    stopTime = KVLTime();
    currentTime = 0;
    pauseTime = 0;
    pause = false;
    frames = 0;
    offset = 0;
    screen = nullptr;
    music = false;
    sound = nullptr;
    soundsystem = false;
    soundchannel = -1;
    quit = false;
    screenHeight = 0;
    screenWidth = 0;
    camera = Camera();
    light = Lightsource();
    system_error = false;
    action = nullptr;
    parameters = nullptr;
    effects = nullptr;
    data = nullptr;
    timeline = nullptr;
    glExtensions = nullptr;
}
