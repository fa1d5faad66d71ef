// The glow chain of one frame at 800x600: a picture in the render buffer,
// bright pass, vertical and horizontal blur, the picture and the halo on the
// screen, and the render buffer emptied for the next frame. Each frame ends
// with glFinish, so the time is the GL work and not only its submission.
// Needs an X server with GLX (xvfb-run around the binary).
#include "bench/QuietStreams.h"
#include "effects/GlowEffect.h"
#include "graphics/FrameBufferObject.h"
#include "graphics/Shader.h"
#include "runtime/DataFBOPool.h"
#include "runtime/DataShaderPool.h"
#include "runtime/KVLDemosys.h"
#include "script/File.h"
#include "script/ParameterGroup.h"

#include <GL/glew.h>
#include <SDL/SDL.h>
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

namespace {

const int WIDTH = 800;
const int HEIGHT = 600;

Shader* loadShader(const std::string& stem) {
    const std::string path = std::string(KVL_SOURCE_DIR) + "/resources/shaders/" + stem;
    File vertex(path + ".vert", 0);
    File fragment(path + ".frag", 0);
    Shader* shader = new Shader();
    if (!vertex.exists() || !fragment.exists() || !shader->setVertexSource(vertex.getAsString()) ||
        !shader->setFragmentSource(fragment.getAsString()) || !shader->link()) {
        delete shader;
        return nullptr;
    }
    return shader;
}

// A few bright bars on a dim ground, so that the bright pass has work.
void paintScene(FrameBufferObject* target, int frame) {
    target->bind();
    glClearColor(0.1f, 0.1f, 0.15f, 1.0f);
    target->clear();
    glEnable(GL_SCISSOR_TEST);
    for (int i = 0; i < 8; i++) {
        glScissor((frame * 7 + i * 97) % WIDTH, i * 70, 60, 12);
        glClearColor(1.0f, 0.9f - 0.1f * i, 0.5f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    glDisable(GL_SCISSOR_TEST);
    target->release();
}

void GlowChainFrame800x600(benchmark::State& state) {
    QuietStreams quiet;
    KVLDemosys::resetState();
    if (!KVLDemosys::screenOpen(WIDTH, HEIGHT, 32, 1, 0) || glewInit() != GLEW_OK ||
        !GLEW_VERSION_2_0) {
        state.SkipWithError("no OpenGL 2.0 window: run under xvfb-run");
        SDL_Quit();
        return;
    }
    KVLDemosys::shaderPool = new DataShaderPool();
    KVLDemosys::fboPool = new DataFBOPool();
    Shader* blur = loadShader("blur");
    Shader* brightpass = loadShader("brightpass");
    if (blur == nullptr || brightpass == nullptr) {
        state.SkipWithError("the production's glow shaders do not build");
        SDL_Quit();
        return;
    }
    KVLDemosys::shaderPool->addShader("blur", blur);
    KVLDemosys::shaderPool->addShader("brightpass", brightpass);
    for (const char* name : {"render", "scratch", "glow"}) {
        KVLDemosys::fboPool->addFBO(name, new FrameBufferObject(WIDTH, HEIGHT, true, false));
    }
    ParameterGroup parameters("glow");
    parameters.addParameter("blur_shader", "blur");
    parameters.addParameter("c_b_shader", "brightpass");
    GlowEffect glow;
    glow.setParameters(&parameters);
    glow.init();
    glow.setBuffers(KVLDemosys::fboPool->getFBO("render"), KVLDemosys::fboPool->getFBO("scratch"),
                    KVLDemosys::fboPool->getFBO("glow"));
    KVLDemosys::setView();

    int frame = 0;
    double seconds = 0.0;
    for (auto _ : state) {
        paintScene(glow.getRenderBuffer(), frame);
        glFinish();
        auto start = std::chrono::steady_clock::now();
        glow.draw(static_cast<unsigned int>(frame * 16));
        glFinish();
        double elapsed =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.SetIterationTime(elapsed);
        seconds += elapsed;
        SDL_GL_SwapBuffers();
        frame++;
    }
    if (frame > 0) {
        state.counters["ms_per_frame"] = 1000.0 * seconds / frame;
        state.counters["fps"] = frame / seconds;
    }

    delete KVLDemosys::shaderPool;
    delete KVLDemosys::fboPool;
    KVLDemosys::shaderPool = nullptr;
    KVLDemosys::fboPool = nullptr;
    SDL_Quit();
    KVLDemosys::resetState();
}

} // namespace

BENCHMARK(GlowChainFrame800x600)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(3.0);
