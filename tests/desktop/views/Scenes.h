// The island as it looks in each of its states, sizes and appearances, for those who look at pictures of it.
#pragma once

#include <QtGui/QImage>
#include <memory>
#include <string>
#include <vector>

#include "core/settings/AppSettings.h"

#include "desktop/views/island/IslandTheme.h"

namespace quenlio {

enum class SceneState {
  empty,
  one,
  several,   // many captures, three of them selected
  hover,     // the pointer on a control, with its tooltip, after it was on the preview
  holding,   // the preview is pressed
  dragging,  // and dragged out
  ring,      // counting down
  recovery,  // the folder cannot be read
  recoveryHover,
  rename,
  thin,  // a capture far wider than high
  dot,   // of a single pixel
  transparent,
  broken,
  focus,  // the keyboard's, on the preview
};
[[nodiscard]] std::string nameOf(SceneState state);
[[nodiscard]] const std::vector<SceneState>& allSceneStates();

struct Scene {
  IslandSize size = IslandSize::extraSmall;
  IslandAppearanceStyle style = IslandAppearanceStyle::light;
  bool increaseContrast = false;
  SceneState state = SceneState::one;
  GlassBacking backing = GlassBacking::composited;
  double scale = 1;  // device pixels a point
};
[[nodiscard]] std::string nameOf(IslandSize size);
[[nodiscard]] std::string nameOf(const Scene& scene);

// Something that is to be read, and where it stands in the picture at one pixel a point.
struct Words {
  std::string text;
  QRect place;
};

// The island alone, on nothing; and what is to be read in it, if asked for.
[[nodiscard]] QImage pictureOf(const Scene& scene, std::vector<Words>* words = nullptr);

// A capture as somebody might make one, of this many pixels: number 0 and up, each another.
[[nodiscard]] QImage sampleCapture(int number, const QSize& size = {1600, 1000});

}  // namespace quenlio
