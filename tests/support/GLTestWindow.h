#ifndef KVL_GLTESTWINDOW_H
#define KVL_GLTESTWINDOW_H

#include <gtest/gtest.h>

#include <GL/glew.h>

#include <array>
#include <cstdint>
#include <string>

// A fixture that opens the player's real window (SDL 1.2, OpenGL, Mesa's
// llvmpipe under Xvfb) for tests that draw and read pixels back. CTest runs
// every test in a process of its own, so each test gets a fresh window.
class GLTestWindow : public ::testing::Test {
public:
    using Rgb = std::array<uint8_t, 3>;
    using Rgba = std::array<uint8_t, 4>;

    static constexpr int WIDTH = 64;
    static constexpr int HEIGHT = 64;

protected:
    void SetUp() override;
    void TearDown() override;

    // Reads one pixel of the back buffer; (0, 0) is the lower left corner.
    // Alpha is left out: the X visual under test may have no alpha channel.
    static Rgb readRgb(int x, int y);
    // The same with the alpha the visual has (255 where it has none).
    static Rgba readPixel(int x, int y);
    // Identity projection and modelview, so coordinates are clip space.
    static void loadIdentityMatrices();
};

// Prints pixels as (r, g, b) in failure messages.
std::ostream& operator<<(std::ostream& out, const GLTestWindow::Rgb& pixel);
// The same text as a string, for the messages of assertions.
std::string pixelText(const GLTestWindow::Rgb& pixel);

#endif
