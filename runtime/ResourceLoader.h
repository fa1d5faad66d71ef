#ifndef KVL_RESOURCELOADER_H
#define KVL_RESOURCELOADER_H

#include <string>

class DemoScriptParser;
class ParameterGroup;
class ProgressBar;

// Carries out the loading sequence of a run in steps that Demo calls one by
// one: pools, script, screen, data files, sound, effect objects, timeline,
// start position; at the end the report, and the freeing of everything.
// What it builds is published through the statics of KVLDemosys.
class ResourceLoader {
public:
    explicit ResourceLoader(std::string filename);
    ~ResourceLoader();
    ResourceLoader(const ResourceLoader&) = delete;
    ResourceLoader& operator=(const ResourceLoader&) = delete;

    bool createDataPools();
    bool parseConfig();
    bool initScreen();
    bool loadDataFiles();
    bool loadSound();
    bool createEffectObjects();
    bool createTimeline();
    bool initDemo();
    bool reload();
    void resetAllEffects();
    void createCopyScript();
    void print();
    bool dispose();
    bool isValid() const;
    std::string getErrorMessage() const;

    ProgressBar* getProgressBar() const;

    // A group of the system parameters. A group the script does not have
    // reads as an empty one, so that asking it for a key is the same fatal
    // fault of the data as asking a present group for an absent key.
    static ParameterGroup* systemGroup(const std::string& name);
    // A value of the system parameters. An absent key is a fatal fault of
    // the data; the message names the block and the key before the end.
    static std::string systemValue(const std::string& group, const std::string& key);

private:
    // The data blocks, in the order loadDataFiles reads them.
    bool loadShaderBlock();
    bool loadFramebufferBlock();
    bool loadGraphicsBlock();
    bool loadBinaryBlock();
    bool loadObjectBlock();
    bool loadAnimationBlock();
    void tick();

    DemoScriptParser* parser;
    ProgressBar* progress;
    std::string filename;
    std::string errorMessage;
    bool valid;
};

#endif
