#include "runtime/ResourceLoader.h"

#include "animation/AnimationParser.h"
#include "effects/DisplayObjectEffect.h"
#include "effects/DisplayTexture.h"
#include "effects/FadeEffect.h"
#include "graphics/FrameBufferObject.h"
#include "graphics/Shader.h"
#include "graphics/Texture.h"
#include "objects/ObjectParser.h"
#include "runtime/Binary.h"
#include "runtime/Data.h"
#include "runtime/DataAnimationPool.h"
#include "runtime/DataBinaryPool.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataEventPool.h"
#include "runtime/DataFBOPool.h"
#include "runtime/DataObjectPool.h"
#include "runtime/DataShaderPool.h"
#include "runtime/DataTexturePool.h"
#include "runtime/GLExtensions.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "runtime/ProgressBar.h"
#include "script/DemoScriptParser.h"
#include "script/File.h"
#include "script/KVLUtils.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "script/StringTokenizer.h"
#include "script/StringUtils.h"
#include "timeline/ActionPool.h"
#include "timeline/EventModifyEffect.h"
#include "timeline/EventStartEffect.h"
#include "timeline/EventStopEffect.h"
#include "timeline/Timeline.h"

#include <GL/glew.h>

#include <iostream>
#include <vector>

namespace {

void log(const std::string& line) { std::cout << line << std::endl; }

const std::string RULE(64, '#');

} // namespace

ResourceLoader::ResourceLoader(std::string filename)
    : parser(nullptr), progress(nullptr), filename(std::move(filename)),
      errorMessage("ResourceLoader : unknown"), valid(true) {}

ResourceLoader::~ResourceLoader() {}

ParameterGroup* ResourceLoader::systemGroup(const std::string& name) {
    static ParameterGroup missing;
    ParameterGroup* group =
        (KVLDemosys::parameters != nullptr) ? KVLDemosys::parameters->getGroup(name) : nullptr;
    if (group == nullptr) {
        missing = ParameterGroup(name);
        return &missing;
    }
    return group;
}

std::string ResourceLoader::systemValue(const std::string& group, const std::string& key) {
    ParameterGroup* parameters = systemGroup(group);
    if (!parameters->exist(key)) {
        std::cerr << "Missing parameter '" << key << "' in block '" << group
                  << "': neither the script nor " << group << ".def gives it a value" << std::endl;
    }
    return parameters->getParameter(key);
}

bool ResourceLoader::loadObjectBlock() {
    log("[Loading 3D Objects]");
    if (!KVLDemosys::parameters->exist("objects")) {
        log("No objects");
        return true;
    }
    ParameterGroup* block = KVLDemosys::parameters->getGroup("objects");
    std::string path = systemValue("paths", "object");
    for (int i = 0; i < block->size(); i++) {
        std::string name = block->getKey(i);
        std::string file = block->getValue(i);
        log("Loading : '" + path + file + "'");
        ObjectParser objectParser(path + file);
        // The first test catches what the constructor found: a missing file
        // or an unknown header.
        if (!objectParser.isValid()) {
            valid = false;
            errorMessage = objectParser.getErrorMessage();
            return false;
        }
        O3dScene* scene = objectParser.parse();
        if (!objectParser.isValid()) {
            valid = false;
            errorMessage = objectParser.getErrorMessage();
            return false;
        }
        KVLDemosys::objectPool->addObject(name, scene);
        tick();
    }
    return true;
}

bool ResourceLoader::loadAnimationBlock() {
    log("[Loading Animation Data]");
    if (!KVLDemosys::parameters->exist("animation")) {
        log("No animation data");
        return true;
    }
    ParameterGroup* block = KVLDemosys::parameters->getGroup("animation");
    std::string path = systemValue("paths", "misc");
    for (int i = 0; i < block->size(); i++) {
        std::string name = block->getKey(i);
        std::string file = block->getValue(i);
        AnimationParser animationParser(path + file);
        Animation* animation = animationParser.parse();
        if (!animationParser.isValid()) {
            errorMessage = animationParser.getErrorMessage();
            valid = false;
            return false;
        }
        KVLDemosys::animationPool->addAnimation(name, animation);
        tick();
    }
    return true;
}

void ResourceLoader::tick() {
    if (progress != nullptr) {
        progress->tick();
    }
}

bool ResourceLoader::createDataPools() {
    log("[Creating DataPools]");
    log("[Creating Pool objects]");
    KVLDemosys::data = new Data();
    KVLDemosys::objectPool = new DataObjectPool();
    KVLDemosys::texturePool = new DataTexturePool();
    KVLDemosys::animationPool = new DataAnimationPool();
    KVLDemosys::effectTemplatePool = new DataEffectPool();
    KVLDemosys::effectPool = new DataEffectPool();
    KVLDemosys::eventPool = new DataEventPool();
    KVLDemosys::binaryPool = new DataBinaryPool();
    KVLDemosys::shaderPool = new DataShaderPool();
    KVLDemosys::fboPool = new DataFBOPool();
    KVLDemosys::data->addData("objectPool", KVLDemosys::objectPool);
    KVLDemosys::data->addData("texturePool", KVLDemosys::texturePool);
    KVLDemosys::data->addData("animationPool", KVLDemosys::animationPool);
    KVLDemosys::data->addData("effectTemplatePool", KVLDemosys::effectTemplatePool);
    KVLDemosys::data->addData("effectPool", KVLDemosys::effectPool);
    KVLDemosys::data->addData("binaryPool", KVLDemosys::binaryPool);
    KVLDemosys::action = new ActionPool();
    KVLDemosys::data->addData("eventPool", KVLDemosys::eventPool);
    KVLDemosys::data->addData("shaderPool", KVLDemosys::shaderPool);
    KVLDemosys::data->addData("fboPool", KVLDemosys::fboPool);

    log("[Adding effect templates]");
    KVLDemosys::effectTemplatePool->addEffect("DisplayObject", new DisplayObjectEffect());
    KVLDemosys::effectTemplatePool->addEffect("DisplayTexture", new DisplayTexture());
    KVLDemosys::effectTemplatePool->addEffect("FadeEffect", new FadeEffect());

    log("[Adding event templates]");
    KVLDemosys::eventPool->addEvent("start", new EventStartEffect());
    KVLDemosys::eventPool->addEvent("stop", new EventStopEffect());
    KVLDemosys::eventPool->addEvent("modify", new EventModifyEffect());
    return true;
}

bool ResourceLoader::parseConfig() {
    log("Parsing config");
    parser = new DemoScriptParser(filename);
    log("[Parsing defaults]");
    parser->parseDefaults(true);
    log("[Parsing demoscript]");
    parser->parse();
    if (!parser->isValid()) {
        errorMessage = parser->getErrorMessage();
        valid = false;
        return false;
    }
    KVLDemosys::parameters = parser->getParameterGroup("system_parameters");
    KVLDemosys::effects = parser->getParameterGroup("effect_parameters");

    int count = 1;
    for (const char* block : {"objects", "graphics", "animation"}) {
        if (KVLDemosys::parameters->exist(block)) {
            count += KVLDemosys::parameters->getGroup(block)->size();
        }
    }
    progress = new ProgressBar(0.09f, 1.2f, 0.0f, count + 3);
    return true;
}

bool ResourceLoader::initScreen() {
    int width = KVLUtils::string2Int(systemValue("screen", "width"));
    int height = KVLUtils::string2Int(systemValue("screen", "height"));
    int bpp = KVLUtils::string2Int(systemValue("screen", "bpp"));
    int fullscreen = KVLUtils::string2Int(systemValue("screen", "fullscreen"));
    std::cout << "Open screen : " << width << "x" << height << "," << bpp << std::endl;
    if (!KVLDemosys::screenOpen(width, height, bpp, 1, fullscreen)) {
        std::string mode = "none";
        if (fullscreen == 0) {
            mode = "windowed";
        } else if (fullscreen == 1) {
            mode = "fullscreen";
        }
        errorMessage = "Failed to open screen : " + KVLUtils::int2string(width) + "x" +
                       KVLUtils::int2string(height) + " bpp=" + KVLUtils::int2string(bpp) +
                       " fullscreen=" + mode + "\n" + KVLDemosys::getMessage();
        valid = false;
        return false;
    }
    log("[Supported OpenGL Extensions]");
    KVLDemosys::glExtensions = new GLExtensions();
    std::cout << KVLDemosys::glExtensions->toString() << std::flush;

    // Both buffers hold the empty bar before the first tick.
    for (int i = 0; i < 2; i++) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        SDL_GL_SwapBuffers();
        progress->draw();
    }
    glViewport(0, 0, width, height);
    return true;
}

bool ResourceLoader::loadDataFiles() {
    return loadShaderBlock() && loadFramebufferBlock() && loadGraphicsBlock() &&
           loadBinaryBlock() && loadObjectBlock() && loadAnimationBlock();
}

bool ResourceLoader::loadShaderBlock() {
    log("[Loading Shaders]");
    if (!KVLDemosys::parameters->exist("shaders")) {
        log("No shaders to load");
        return true;
    }
    ParameterGroup* block = KVLDemosys::parameters->getGroup("shaders");
    std::string path = systemValue("paths", "shaders");
    log("Shader path = " + path);
    for (int i = 0; i < block->size(); i++) {
        std::string name = block->getKey(i);
        std::string stem = block->getValue(i);
        log("Loading shader " + name + " = " + stem);
        // A shader that fails stays allocated: the load stops right here.
        Shader* shader = new Shader();
        File vertex(path + stem + ".vert", 0);
        if (!vertex.exists()) {
            errorMessage = "Vertex shader '" + stem + ".vert' not found";
            valid = false;
            return false;
        }
        if (!shader->setVertexSource(vertex.getAsString())) {
            errorMessage = "Error while compiling vertex shader\nShader: " + stem + ".vert\n" +
                           shader->getErrorMessage();
            valid = false;
            return false;
        }
        File fragment(path + stem + ".frag", 0);
        if (!fragment.exists()) {
            // valid stays true: the run stops, and the report shows no text.
            errorMessage = "Fragement shader '" + stem + ".frag' not found";
            return false;
        }
        if (!shader->setFragmentSource(fragment.getAsString())) {
            errorMessage = "Error while compiling fragment shader\nShader: " + stem + ".frag\n" +
                           shader->getErrorMessage();
            valid = false;
            return false;
        }
        if (!shader->link()) {
            errorMessage = "Error while linking shader pair\nShader: " + stem + "\n" +
                           shader->getErrorMessage();
            valid = false;
            return false;
        }
        KVLDemosys::shaderPool->addShader(name, shader);
    }
    return true;
}

bool ResourceLoader::loadFramebufferBlock() {
    log("[Creating FramebufferObjects]");
    if (!KVLDemosys::parameters->exist("framebuffers")) {
        log("No framebuffers to create");
        return true;
    }
    ParameterGroup* block = KVLDemosys::parameters->getGroup("framebuffers");
    for (int i = 0; i < block->size(); i++) {
        std::string name = block->getKey(i);
        std::string value = block->getValue(i);
        StringTokenizer tokens(value, ",");
        int count = tokens.countTokens();
        if (count < 3 || count > 5) {
            errorMessage = "Wrong number of parameters in framebuffer block\nFramebuffer: " + name +
                           "\ndefined as : " + value +
                           "\nValid syntax: width, height, COLOR_BUFFER "
                           "[,DEPTH_BUFFER][,STENCIL_BUFFER]";
            valid = false;
            return false;
        }

        std::string token = StringUtils::trim(tokens.getNext());
        int width = KVLDemosys::screenWidth;
        if (token != "width") {
            if (!StringUtils::isInt(token)) {
                errorMessage = "Frambuffer width is not an int\nFBO: " + name +
                               "\nvalue : " + token + "\nValid syntax: 'width' or unsinged integer";
                valid = false;
                return false;
            }
            width = KVLUtils::string2Int(token);
        }

        token = StringUtils::trim(tokens.getNext());
        int height = KVLDemosys::screenHeight;
        if (token != "height") {
            if (!StringUtils::isInt(token)) {
                errorMessage = "Frambuffer height is not an int\nFBO: " + name +
                               "\nvalue : " + token +
                               "\nValid syntax: 'height' or unsinged integer";
                valid = false;
                return false;
            }
            height = KVLUtils::string2Int(token);
        }

        // The buffer words stand in fixed places: no stencil without depth.
        const char* words[] = {"COLOR_BUFFER", "DEPTH_BUFFER", "STENCIL_BUFFER"};
        for (int place = 0; place < count - 2; place++) {
            token = StringUtils::trim(tokens.getNext());
            if (token != words[place]) {
                errorMessage = "Wrong parameter for framebuffer '" + name + "'\nvalue: '" + token +
                               "'\nexpected : '" + words[place] + "'\n";
                valid = false;
                return false;
            }
            if (place == 1) {
                log("moo ");
            }
        }
        bool depth = count > 3;
        bool stencil = count > 4;

        FrameBufferObject* fbo = new FrameBufferObject(width, height, depth, stencil);
        log(fbo->toString());
        // Every target starts out empty.
        fbo->bind();
        fbo->clear();
        fbo->release();
        // release hands back the screen's view; the loading bar that follows
        // draws in clip coordinates.
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        KVLDemosys::fboPool->addFBO(name, fbo);
    }
    return true;
}

bool ResourceLoader::loadGraphicsBlock() {
    log("[Loading Graphics]");
    if (!KVLDemosys::parameters->exist("graphics")) {
        log("No image data");
        return true;
    }
    ParameterGroup* block = KVLDemosys::parameters->getGroup("graphics");
    std::string path = systemValue("paths", "gfx");
    for (int i = 0; i < block->size(); i++) {
        std::string name = block->getKey(i);
        std::string file = block->getValue(i);
        StringTokenizer tokens(file, ",");
        int count = tokens.countTokens();
        bool mipmap = false;
        unsigned int target = GL_TEXTURE_2D;
        // One token leaves the value as it stands; otherwise the file is the
        // first token, untrimmed, so a blank before the comma stays in it.
        if (count > 1) {
            file = tokens.getNext();
            std::string word = StringUtils::trim(tokens.getNext());
            if (word == "GL_TEXTURE_1D") {
                target = GL_TEXTURE_1D;
            } else if (word == "GL_TEXTURE_2D") {
                target = GL_TEXTURE_2D;
            } else if (word == "GL_TEXTURE_3D") {
                target = GL_TEXTURE_3D;
            } else {
                errorMessage = "TexturePool: '" + file + "' using wrong texture parameter '" +
                               word + "'\n" + "Options : GL_TEXTURE_1D/2D/3D";
                valid = false;
                return false;
            }
        }
        // The mipmap word is read only from a value of exactly three tokens.
        if (count == 3) {
            std::string word = StringUtils::trim(tokens.getNext());
            if (word != "GEN_MIPMAP") {
                errorMessage = "TexturePool: '" + file + "' using wrong mipmap parameter " + "'" +
                               word + "'\n" + "Options : GEN_MIPMAPS";
                valid = false;
                return false;
            }
            mipmap = true;
        }
        // A file already loaded is not loaded again, and this entry's name
        // stays unknown to the pool.
        if (!KVLDemosys::texturePool->isFileInPool(file)) {
            log("Load : " + path + file);
            Texture* texture = KVLDemosys::loadTexture(path + file, target, mipmap);
            if (texture == nullptr) {
                valid = false;
                errorMessage = "Failed to load texture!\nFile : '" + path + file + "'";
                return false;
            }
            texture->setFilename(file);
            KVLDemosys::texturePool->addTexture(name, texture);
        }
        tick();
    }
    return true;
}

bool ResourceLoader::loadBinaryBlock() {
    log("[Loading Binary Data]");
    if (!KVLDemosys::parameters->exist("binary")) {
        log("No binary data");
        return true;
    }
    ParameterGroup* block = KVLDemosys::parameters->getGroup("binary");
    std::string path = systemValue("paths", "misc");
    for (int i = 0; i < block->size(); i++) {
        std::string name = block->getKey(i);
        std::string file = block->getValue(i);
        log("Loading binary : '" + path + file + "'");
        Binary* binary = KVLDemosys::loadBinary(path + file);
        if (binary == nullptr) {
            valid = false;
            errorMessage = "Failed to binary data!\nFile : '" + path + file + "'";
            return false;
        }
        KVLDemosys::binaryPool->addData(name, binary);
    }
    return true;
}

bool ResourceLoader::loadSound() {
    log("[Setting up sound]");
    // A script without a sound block plays no music.
    bool hasSound = KVLDemosys::parameters->exist("sound");
    std::string path;
    if (hasSound) {
        path = systemValue("paths", "sound") + systemValue("sound", "file");
    }
    if (hasSound && systemValue("sound", "play") == "1") {
        log("Play : " + path);
        std::vector<char> name(path.begin(), path.end());
        name.push_back('\0');
        if (!KVLDemosys::soundInit(name.data())) {
            errorMessage = "Failed to load sound!\nFile : '" + path + "'";
            valid = false;
            return false;
        }
        // These are the words in this place, printed after a successful load.
        log("No sound");
    }
    tick();
    return true;
}

bool ResourceLoader::createEffectObjects() {
    log("[Create effect objects]");
    for (int i = 0; i < KVLDemosys::effects->size(); i++) {
        std::string key = KVLDemosys::effects->getKey(i);
        ParameterGroup* group = KVLDemosys::effects->getValue(i);
        std::string className = group->getParameter("class");
        Effect* instance = KVLDemosys::effectTemplatePool->getEffect(className)->getInstance();
        instance->setParameters(group);
        log(className + ".init()");
        instance->init();
        KVLDemosys::effectPool->addEffect(key, instance);
    }
    tick();
    return true;
}

bool ResourceLoader::createTimeline() {
    log("[Parsing timeline]");
    KVLDemosys::timeline = parser->parseTimeline();
    if (!parser->isValid()) {
        // valid stays true here: the run stops, and the report shows no text.
        errorMessage = parser->getErrorMessage();
        return false;
    }
    log("[Parsing timeline - DONE]");
    KVLDemosys::timeline->init();
    log("[Timeline init]");
    tick();
    return true;
}

bool ResourceLoader::initDemo() {
    log("[Getting Startpos]");
    KVLTime start(systemValue("system", "start"));
    log("startpos = " + start.toString());
    tick();
    log("[Demo Init]");
    if (KVLDemosys::parameters == nullptr || !KVLDemosys::parameters->exist("sound")) {
        return true;
    }
    if (systemValue("sound", "play") != "1") {
        return true;
    }
    bool played;
    if (start.getTicks() != 0) {
        KVLDemosys::timeline->moveTo(start.getTicks());
        played = KVLDemosys::soundPlay(start.getTicks());
    } else {
        played = KVLDemosys::soundPlay();
    }
    if (!played) {
        valid = false;
        errorMessage = "Failed to play sound";
        return false;
    }
    return true;
}

void ResourceLoader::resetAllEffects() {
    for (int i = 0; i < KVLDemosys::effects->size(); i++) {
        std::string key = KVLDemosys::effects->getKey(i);
        KVLDemosys::effectPool->getEffect(key)->reset();
    }
}

bool ResourceLoader::reload() {
    log("ResourceLoader::reload()");
    log("Parsing demoscript...");
    DemoScriptParser local(filename);
    local.setDebug(false);
    local.parseDefaults(true);
    local.parse();
    if (!local.isValid()) {
        errorMessage = local.getErrorMessage();
        return false;
    }
    log("Parsing timeline...");
    Timeline* fresh = local.parseTimeline();
    if (!local.isValid()) {
        errorMessage = local.getErrorMessage();
        delete fresh;
        return false;
    }
    fresh->init();
    fresh->setOffset(KVLDemosys::timeline->getOffset());
    delete KVLDemosys::timeline;
    KVLDemosys::timeline = fresh;
    // No running effect survives a reload.
    KVLDemosys::action->removeAll();
    log("ResourceLoader::reload() - Done");
    return true;
}

void ResourceLoader::createCopyScript() {}

void ResourceLoader::print() {
    std::string title = "# Resources";
    title.resize(63, ' ');
    std::cout << RULE << "\n" << title << "#\n" << RULE << "\n";
    std::cout << "--------------------- System parameters ------------------------\n";
    std::cout << (KVLDemosys::parameters ? KVLDemosys::parameters->toString() : "No Data\n");
    std::cout << "--------------------- Effects parameters -----------------------\n";
    std::cout << (KVLDemosys::effects ? KVLDemosys::effects->toString() : "No Data\n");
    std::cout << "--------------------- DataPools --------------------------------\n";
    std::cout << (KVLDemosys::data ? KVLDemosys::data->toString() : "No Data\n");
    std::cout << "--------------------- Timeline ---------------------------------\n";
    std::cout << (KVLDemosys::timeline ? KVLDemosys::timeline->toString() + "\n" : "No Data\n");
    std::cout << RULE << std::endl;
}

bool ResourceLoader::dispose() {
    delete parser;
    parser = nullptr;
    delete progress;
    progress = nullptr;
    log("[Deleting Pools]");
    log("delete KVLDemosys::parameters");
    delete KVLDemosys::parameters;
    log("delete KVLDemosys::effects");
    delete KVLDemosys::effects;
    log("delete KVLDemosys::data");
    delete KVLDemosys::data;
    log("delete KVLDemosys::timeline");
    delete KVLDemosys::timeline;
    log("delete KVLDemosys::action");
    delete KVLDemosys::action;
    if (KVLDemosys::glExtensions != nullptr) {
        log("delete KVLDemosys::glExtensions");
        delete KVLDemosys::glExtensions;
    }
    return true;
}

bool ResourceLoader::isValid() const { return valid; }

std::string ResourceLoader::getErrorMessage() const { return errorMessage; }

ProgressBar* ResourceLoader::getProgressBar() const { return progress; }
