#include "tests/vireo/ContextTest.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include <cstdio>
namespace tavo { namespace {
using Probe = ContextTest;
TEST_F(Probe, All) {
  std::string ext((const char*)glGetString(GL_EXTENSIONS));
  printf("NV_float_buffer %d texture_float %d shadow %d\n", ext.find("GL_NV_float_buffer")!=std::string::npos, ext.find("GL_ARB_texture_float")!=std::string::npos, ext.find("GL_ARB_shadow ")!=std::string::npos);
  for (unsigned comps = 0; comps <= 5; ++comps)
  for (unsigned flags = 0; flags < 32; ++flags) {
    GLRenderTextureFBO t(context());
    bool ok = t.create(16, 8, comps, flags);
    unsigned st = tavo::glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT);
    printf("comps %u flags %2u: %d", comps, flags, ok);
    if (!ok) printf(" status %x", st);
    for (unsigned e : drainErrors()) printf(" err %x", e);
    printf("\n");
  }
  GLRenderTextureFBO d(context());
  printf("depth %d\n", d.createDepthTexture(16,8));
  for (unsigned e : drainErrors()) printf(" err %x", e);
  GLRenderTextureFBO z(context());
  printf("depth0 %d\n", z.createDepthTexture(0,0));
  for (unsigned e : drainErrors()) printf(" err %x", e);
  GLRenderTextureFBO y(context());
  printf("0x0 %d\n", y.create(0,0,4,16));
  for (unsigned e : drainErrors()) printf(" err %x", e);
}
}}
