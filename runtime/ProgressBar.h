#ifndef KVL_PROGRESSBAR_H
#define KVL_PROGRESSBAR_H

// The loading bar: a white frame with a filling, on an otherwise black
// screen. Every draw is a whole frame and swaps the buffers, so loading is
// paced by the swap. Coordinates are those of the matrices at drawing time;
// during loading both are identity, so they are clip coordinates.
class ProgressBar {
public:
    ProgressBar();
    explicit ProgressBar(int maxTicks);
    ProgressBar(float height, float width, float ypos, int maxTicks);

    // Shows the state before this tick counts, so the bar never shows full.
    void tick();
    void draw();

    float getProgress() const;
    int getTickCount() const;
    int getMaxTicks() const;

private:
    float height;
    float width;
    float ypos;
    float progress;
    int maxTicks;
    int tickCount;
};

#endif
