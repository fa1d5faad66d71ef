#include "runtime/ProgressBar.h"
#include "support/GLTestWindow.h"

#include <SDL/SDL.h>
#include <gtest/gtest.h>

// The bar swaps the buffers at every draw. Mesa's software renderer under
// Xvfb swaps by copying, so the back buffer still holds the drawn frame.
class ProgressBarDrawing : public GLTestWindow {
protected:
    static Rgb readFront(int x, int y) { return readRgb(x, y); }
    // Paints the back buffer red: if no draw happens, it stays so.
    static void paintBackRed() {
        glClearColor(1, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glClearColor(0, 0, 0, 0);
    }
    // x in clip space to a pixel column of the 64 pixel wide window.
    static int column(float x) { return static_cast<int>((x + 1.0f) * 0.5f * WIDTH); }
    static int row(float y) { return static_cast<int>((y + 1.0f) * 0.5f * HEIGHT); }

    const Rgb white{255, 255, 255};
    const Rgb black{0, 0, 0};
    const Rgb red{255, 0, 0};
};

TEST_F(ProgressBarDrawing, BarWithZeroMaximumNeverDrawsThroughTick) {
    ProgressBar bar(0.5f, 1.6f, 0.0f, 0);
    paintBackRed();
    bar.tick();
    bar.tick();
    EXPECT_EQ(0, bar.getTickCount());
    EXPECT_EQ(red, readRgb(32, 32));
}

TEST_F(ProgressBarDrawing, TicksBeyondTheMaximumDoNothingAndDrawNothing) {
    ProgressBar bar(0.5f, 1.6f, 0.0f, 2);
    bar.tick();
    bar.tick();
    EXPECT_EQ(2, bar.getTickCount());
    float shown = bar.getProgress();
    paintBackRed();
    bar.tick();
    EXPECT_EQ(2, bar.getTickCount());
    EXPECT_FLOAT_EQ(shown, bar.getProgress());
    EXPECT_EQ(red, readRgb(32, 32));
}

TEST_F(ProgressBarDrawing, FirstTickShowsAnEmptyFrame) {
    ProgressBar bar(0.5f, 1.6f, 0.0f, 4);
    bar.tick();
    EXPECT_FLOAT_EQ(0.0f, bar.getProgress());
    // Frame edge white, inside black, no filling anywhere.
    EXPECT_EQ(white, readFront(column(-0.8f), 32));
    EXPECT_EQ(black, readFront(column(-0.6f), 32));
    EXPECT_EQ(black, readFront(column(0.0f), 32));
    EXPECT_EQ(black, readFront(column(0.6f), 32));
    // Outside the frame the screen is cleared black.
    EXPECT_EQ(black, readFront(32, row(0.6f)));
}

TEST_F(ProgressBarDrawing, BarNeverShowsFullTheLastTickShowsAllButOne) {
    ProgressBar bar(0.5f, 1.6f, 0.0f, 4);
    for (int i = 0; i < 4; i++) {
        bar.tick();
    }
    EXPECT_FLOAT_EQ(0.75f, bar.getProgress());
    // The filling runs from -0.785 to -0.785 + 1.57 * 0.75 = 0.3925.
    EXPECT_EQ(white, readFront(column(0.0f), 32));
    EXPECT_EQ(white, readFront(column(0.3f), 32));
    EXPECT_EQ(black, readFront(column(0.6f), 32));
}

TEST_F(ProgressBarDrawing, HalfwayFillingCoversTheLeftHalfOfTheInside) {
    ProgressBar bar(0.5f, 1.6f, 0.0f, 2);
    bar.tick();
    bar.tick();
    EXPECT_FLOAT_EQ(0.5f, bar.getProgress());
    // Filling edges: -0.785 .. 0.0.
    EXPECT_EQ(white, readFront(column(-0.5f), 32));
    EXPECT_EQ(black, readFront(column(0.3f), 32));
}

TEST(ProgressBar, DefaultsAreAFullWidthBarNearTheBottom) {
    ProgressBar bar;
    EXPECT_EQ(1, bar.getMaxTicks());
    EXPECT_EQ(0, bar.getTickCount());
    EXPECT_FLOAT_EQ(0.0f, bar.getProgress());
    ProgressBar sized(7);
    EXPECT_EQ(7, sized.getMaxTicks());
}
