// Pictures of a private X server's screen, for people to look at.
#pragma once

#include "session/x_display.h"

#include <QImage>
#include <QRect>
#include <chrono>
#include <filesystem>
#include <functional>
#include <vector>

namespace hopsel::session {

class XScreenshots {
  public:
    /// Writes the screen as a PNG once it has stopped changing: when two looks in a row are the same, or
    /// after two seconds. Throws `std::runtime_error` when it cannot be written.
    void save(const std::filesystem::path& path);
    /// Writes the next picture: one that is none of those written by this before, with something to be seen
    /// in `part`. `turn` is called between looks, and returns once whoever draws has had the time to: two
    /// looks in a row are the same then. Throws `std::runtime_error` also if there is none within `atMost`.
    void saveNext(const std::filesystem::path& path, const QRect& part, const std::function<void()>& turn,
                  std::chrono::milliseconds atMost);

  private:
    bool isNext(const QImage& image, const QRect& part) const;

    std::vector<QImage> written_;
    XDisplay display_;
};

} // namespace hopsel::session
