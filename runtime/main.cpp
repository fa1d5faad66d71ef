#include "runtime/Demo.h"

int main(int argc, char** argv) {
    Demo demo(argc, argv);
    demo.load();
    demo.init();
    demo.run();
    demo.dispose();
    return 0;
}
