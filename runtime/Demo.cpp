#include "runtime/Demo.h"

Demo::Demo(int, char**) : scriptFile("demoscript.txt"), scriptPath("resources/scripts/"), invalid(false), debugFlag(false) {}
Demo::~Demo() {}
void Demo::addEffect(std::string, Effect*) {}
bool Demo::load() { return invalid; }
void Demo::init() {}
void Demo::run() {}
bool Demo::dispose() { return true; }
bool Demo::isValid() const { return !invalid; }
Demo* Demo::debug(bool on) { debugFlag = on; return this; }
void Demo::keyEvents() {}
void Demo::drawPauseSymbol() {}
