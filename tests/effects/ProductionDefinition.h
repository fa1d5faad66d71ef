#ifndef KVL_PRODUCTIONDEFINITION_H
#define KVL_PRODUCTIONDEFINITION_H

#include "script/EffectDefinition.h"
#include "script/EffectDefinitionParser.h"
#include "script/ParameterGroup.h"
#include "support/StdoutCapture.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

// The definition file of one of the production's effects, read the way the
// script parser reads it; the parser's log stays out of the test output.
class ProductionDefinition {
public:
    // The effect's class name, which names its file.
    explicit ProductionDefinition(const std::string& name)
        : path(std::string(KVL_SOURCE_DIR) + "/resources/definitions/" + name + ".def") {}

    const std::string& getPath() const { return path; }

    // The defaults the parser puts into every block of the effect before the
    // script's own values; null when the file does not parse.
    std::unique_ptr<ParameterGroup> defaults() const {
        std::unique_ptr<ParameterGroup> result;
        logOf([&] {
            std::unique_ptr<EffectDefinition> definition = parse();
            if (definition != nullptr) {
                result.reset(definition->getDefaults());
            }
        });
        return result;
    }

    // The file declares each method with exactly these argument kinds.
    void expectMethods(const std::map<std::string, std::vector<std::string>>& methods) const {
        std::unique_ptr<EffectDefinition> definition;
        logOf([&] { definition = parse(); });
        ASSERT_NE(nullptr, definition) << path;
        for (const auto& method : methods) {
            ASSERT_TRUE(definition->hasMethod(method.first)) << method.first;
            ParameterGroup* arguments = definition->getMethod(method.first);
            ASSERT_EQ(static_cast<int>(method.second.size()), arguments->size()) << method.first;
            for (size_t i = 0; i < method.second.size(); i++) {
                EXPECT_EQ(method.second[i], arguments->getValue(static_cast<int>(i)))
                    << method.first;
            }
        }
        logOf([&] { definition.reset(); });
    }

private:
    std::unique_ptr<EffectDefinition> parse() const {
        EffectDefinitionParser parser(path);
        return std::unique_ptr<EffectDefinition>(parser.parse());
    }

    std::string path;
};

#endif
