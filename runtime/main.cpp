#include "runtime/Demo.h"
#include "runtime/SceneClasses.h"

// Builds the one Demo of a run, registers the effect classes under the names
// the scripts know them by, and runs the four phases. Always returns 0: a
// failed load ends through the normal shutdown with its report.
int main(int argc, char** argv) {
    Demo demo(argc, argv);
    SceneClasses::registerAll(demo);
    demo.load();
    demo.init();
    demo.run();
    demo.dispose();
    return 0;
}
