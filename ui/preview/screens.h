// The screens of the preview, in their order.
#pragma once

#include <QSize>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace hopsel {

struct PreviewScreen {
    std::string name;
    QSize size;
    /// Made anew for each picture, with everything it shows; hands it to the drawing function.
    std::function<bool(const std::function<bool(QWidget&)>& draw)> show;
};

const std::vector<PreviewScreen>& previewScreens();

} // namespace hopsel
