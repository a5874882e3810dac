#pragma once

#include <QQuickImageProvider>

namespace orvanta {

/// Soft shadows of rounded rectangles, to be stretched between their corners:
/// "image://shadow/<blur>/<radius>/<opacity>". Corners are blur + radius + 2 wide.
class ShadowImages final : public QQuickImageProvider {
public:
    /// What it is called in an engine.
    static constexpr auto name = "shadow";

    ShadowImages() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace orvanta
