#ifndef KVL_DISPLAYOBJECTEFFECT_H
#define KVL_DISPLAYOBJECTEFFECT_H

#include "timeline/Effect.h"

class DisplayList;
class O3dScene;

// Shows one object of the object pool, lit by whatever lights are on,
// turning steadily around its axes and able to glide to a new place. It
// doubles as a viewer: axis lines through the object's centre in every
// frame, and on request its normals and wire frame.
class DisplayObjectEffect : public Effect {
public:
    DisplayObjectEffect();
    ~DisplayObjectEffect() override;
    DisplayObjectEffect(const DisplayObjectEffect&) = delete;
    DisplayObjectEffect& operator=(const DisplayObjectEffect&) = delete;

    void draw(unsigned int ticks) override;
    void init() override;
    void reset() override;
    void modify(std::string method, ParameterGroup* parameters) override;
    Effect* getInstance() override;

    void interpolateLinear(float x0, float y0, float z0, float x1, float y1, float z1, float p);

    const float* getRotationAngle() const;
    const float* getPosition() const;
    const float* getRotationSpeed() const;
    const float* getRotationCenter() const;
    float getMoveProgress() const;
    bool isDrawingNormals() const;
    bool areNormalsForward() const;
    int getShading() const;
    float getScale() const;
    O3dScene* getScene() const;
    DisplayList* getDisplayList() const;

    // The largest angle step of one frame, in steps of 360 degrees a second.
    static float stepOf(unsigned int frameTicks);

private:
    float rotationAngle[3];
    float position[3];
    float rotationSpeed[3];
    float rotationCenter[3];
    O3dScene* scene;
    DisplayList* displayList;
    int shading;
    float scale;
    bool normalsForward;
    bool drawNormals;
    unsigned int moveEndTicks;
    float moveTo[3];
    float moveFrom[3];
    float moveProgress;
};

#endif
