#ifndef KVL_EFFECT_H
#define KVL_EFFECT_H

#include <cstddef>
#include <string>

class FrameBufferObject;
class KVLTime;
class ParameterGroup;

// Base of every scene. The base operations do nothing, so a scene overrides
// only what it needs. A default constructed object is a template: it must not
// touch OpenGL or the pools, since templates exist before the window does;
// all of that belongs in init(), which runs once per instance at load time.
class Effect {
public:
    Effect();
    virtual ~Effect();

    virtual void draw(unsigned int ticks);
    virtual void init();
    virtual void reset();
    virtual void modify(std::string method, ParameterGroup* parameters);
    virtual Effect* getInstance();

    void setParameters(ParameterGroup* group);
    void setStartTime(unsigned int ticks);
    void setModifyTime(unsigned int ticks);
    void setLastCalled(unsigned int ticks);
    void setRenderTarget(FrameBufferObject* target);
    FrameBufferObject* getRenderTarget() const;

    // Time since the previous draw. A jump of more than a second (the first
    // draw after a start, a clock that moved) counts as one nominal 16 ms
    // frame, so animation never leaps; a stopped clock gives 0.
    unsigned int getFrameTicks(unsigned int ticks) const;
    double getFrameTime(unsigned int ticks) const;
    unsigned int getModifyTicks(unsigned int ticks) const;
    double getModifyTime(unsigned int ticks) const;

protected:
    // A value of the group read as a float, the way every effect reads its
    // numbers.
    static float floatOf(const ParameterGroup* group, const std::string& key);
    // The values of the keys in turn: values[0] from keys[0] and so on.
    template <std::size_t N>
    static void floatsOf(const ParameterGroup* group, const char* const (&keys)[N],
                         float (&values)[N]) {
        for (std::size_t i = 0; i < N; i++) {
            values[i] = floatOf(group, keys[i]);
        }
    }
    // Progress of a timed change at the clock's ticks: (t - start) / (end -
    // start), with an upper clamp at 1.0 and no lower one, so a change
    // ordered ahead of its start extrapolates backwards.
    static double progressAt(unsigned int ticks, const KVLTime& start, const KVLTime& end);

    ParameterGroup* parameters;
    unsigned int startTime;
    unsigned int modifyTime;
    unsigned int lastCalled;
    FrameBufferObject* renderTarget;
};

#endif
