#ifndef KVL_SCENECLASSES_H
#define KVL_SCENECLASSES_H

class Demo;

// The effect classes compiled into the player, registered under the names by
// which scripts know them. main() calls this right after building its Demo;
// the programs built around the player (capture, workbench, checker) call it
// too, so that every one of them knows exactly the player's templates, in the
// player's order.
class SceneClasses {
public:
    static void registerAll(Demo& demo);
};

#endif
