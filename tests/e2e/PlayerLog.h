#ifndef KVL_PLAYERLOG_H
#define KVL_PLAYERLOG_H

#include "support/ExpectedLog.h"
#include "support/LogLines.h"
#include "support/PlayerProcess.h"

#include <string>
#include <vector>

// The parts of the player's log that the end-to-end tests expect in full:
// the closing text of a failed load, the report and the disposal at the end.

const std::string RULE(64, '#');

// Every key of "screen" is given, so the report does not depend on the
// defaults of the definition files.
const std::string SCREEN =
    "width = 320; height = 240; bpp = 32; fullscreen = 0; near = 1.0; far = 100.0;";

// The effects parameters of the report for the one fade of a production.
const std::vector<std::string> FADE_PARAMETERS = {"fade {", "    class = FadeEffect;", "}"};

// The closing text of a failed loader: "ResourceLoader:", "Message :", the
// message and two line ends, printed and then shown once more.
inline std::vector<std::string> loaderMessageTwice(const std::string& message) {
    std::vector<std::string> once = splitLines("ResourceLoader:\nMessage :\n" + message + "\n\n");
    return once + once;
}

// A group of parameters as the report lists it.
inline std::vector<std::string> group(const std::string& name,
                                      const std::vector<std::string>& entries) {
    std::vector<std::string> lines{name + " {"};
    for (const std::string& entry : entries) {
        lines.push_back("    " + entry + ";");
    }
    lines.push_back("}");
    return lines;
}

// The system parameters of a script with the default paths and SCREEN.
inline std::vector<std::string> systemParameters(const std::string& soundFile,
                                                 const std::string& play,
                                                 const std::vector<std::string>& system) {
    return group("paths", {"definition = resources/definitions/", "misc = resources/misc/",
                           "sound = resources/music/"}) +
           group("screen", {"bpp = 32", "far = 100.0", "fullscreen = 0", "height = 240",
                            "near = 1.0", "width = 320"}) +
           group("sound", {"file = " + soundFile, "play = " + play}) + group("system", system);
}

// The pools section: `effects` are the effect objects made, `templates` the
// effect templates, `targets` the framebuffers and `binaries` the lines of
// the binary pool.
inline std::vector<std::string> dataPools(const std::vector<std::string>& effects,
                                          const std::vector<std::string>& templates,
                                          const std::vector<std::string>& targets = {},
                                          const std::vector<std::string>& binaries = {}) {
    std::vector<std::string> lines{"Shaders in pool : 0", "AnimationPool {", "}",
                                   "DataBinaryPool {",
                                   "    num3dObjects = " + std::to_string(binaries.size())};
    lines = lines + binaries + std::vector<std::string>{"}", "EffectPool {"};
    for (const std::string& name : effects) {
        lines.push_back("    " + name + " = Effect");
    }
    lines = lines + std::vector<std::string>{"}", "EffectPool {"};
    for (const std::string& name : templates) {
        lines.push_back("    " + name + " = Effect");
    }
    lines = lines + std::vector<std::string>{"}",
                                             "EventPool {",
                                             "    modify = EventModifyEffect {  }",
                                             "    start = EventStartEffect {  }",
                                             "    stop = EventStopEffect {  }",
                                             "}",
                                             "FBOPool {"};
    for (const std::string& name : targets) {
        lines.push_back("  " + name + " = ");
    }
    return lines + std::vector<std::string>{"}",
                                            "DataObjectPool {",
                                            "    num3dObjects = 0",
                                            "}",
                                            "ShaderPool {",
                                            "<Empty>",
                                            "}",
                                            "DataTexturePool {",
                                            "    total memory size : 0 mb - 0 bytes",
                                            "    total file size : 0 mb - 0 bytes",
                                            "    numTextures = 0",
                                            "}"};
}

inline std::vector<std::string> report(const std::vector<std::string>& system,
                                       const std::vector<std::string>& effects,
                                       const std::vector<std::string>& pools,
                                       const std::vector<std::string>& timeline) {
    return std::vector<std::string>{
               RULE, "# Resources                                                    #", RULE,
               "--------------------- System parameters ------------------------"} +
           system +
           std::vector<std::string>{
               "--------------------- Effects parameters -----------------------"} +
           effects +
           std::vector<std::string>{
               "--------------------- DataPools --------------------------------"} +
           pools +
           std::vector<std::string>{
               "--------------------- Timeline ---------------------------------"} +
           timeline + std::vector<std::string>{RULE};
}

// From the disposal of the pools to the last line. The parser's definitions
// go first, then the stores, pools, timeline and action pool in that order;
// each of the `targets` framebuffers deletes its colour texture with the
// texture's own message.
inline void expectDisposal(ExpectedLog& log, const std::vector<std::string>& effects,
                           const std::vector<std::string>& templates,
                           const std::vector<std::string>& binaries, int targets, bool timeline,
                           bool extensions) {
    log.skipTo("[Deleting Pools]")
        .line("delete KVLDemosys::parameters")
        .line("delete KVLDemosys::effects")
        .line("delete KVLDemosys::data")
        .line("[Dispose animationPool]")
        .line("[Dispose binaryPool]");
    for (const std::string& name : binaries) {
        log.line(" -> delete " + name);
    }
    log.line("[Dispose effectPool]");
    for (const std::string& name : effects) {
        log.line(" -> delete " + name);
    }
    log.line("[Dispose effectPool]");
    for (const std::string& name : templates) {
        log.line(" -> delete " + name);
    }
    log.line("[Dispose eventPool]")
        .line(" -> delete modify")
        .line(" -> delete start")
        .line(" -> delete stop");
    for (int i = 0; i < targets; i++) {
        log.startingWith("Texture::ID(");
    }
    log.line("[Dispose objectPool]")
        .line("[Dispose texturePool]")
        .line("delete KVLDemosys::timeline");
    if (timeline) {
        log.line("[Disposing Timeline Events]").line("[Disposing Timeline Checkpoints]");
    }
    log.line("delete KVLDemosys::action");
    if (extensions) {
        log.line("delete KVLDemosys::glExtensions");
    }
    log.line("KVLDemosys::shutdown()").line("[Application End]");
}

#endif
