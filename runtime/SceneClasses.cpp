#include "runtime/SceneClasses.h"

#include "effects/GlowEffect.h"
#include "runtime/Demo.h"

// One new object of each class, in this order: the template listing and the
// constructor lines of a run follow it.
void SceneClasses::registerAll(Demo& demo) {
    demo.addEffect("GlowEffect", new GlowEffect());
}
