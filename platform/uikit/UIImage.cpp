// SPDX-License-Identifier: MIT
#include "platform/uikit/UIImage.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/ResourceWatch.h"
#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIDevice.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIImage)

namespace {

constexpr std::array<std::uint8_t, 8> pngSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
// The header chunk comes first in every PNG: its length (13), its name, then width and height.
constexpr std::array<std::uint8_t, 8> headerChunk{0, 0, 0, 13, 'I', 'H', 'D', 'R'};
// Signature, length and name, 13 bytes of content, checksum.
constexpr std::size_t headerEnd = 8 + 8 + 13 + 4;

std::uint32_t bigEndian(const Data& data, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = (number << 8U) | data[offset + i];
    return number;
}

/// In pixels; empty for bytes that do not begin as a picture does.
std::optional<Size> pixelSize(const Data& data) {
    if (data.size() < headerEnd) return std::nullopt;
    if (!std::equal(pngSignature.begin(), pngSignature.end(), data.begin())) return std::nullopt;
    if (!std::equal(headerChunk.begin(), headerChunk.end(), data.begin() + pngSignature.size()))
        return std::nullopt;
    constexpr std::uint32_t largest = 0x7FFFFFFF;
    const std::uint32_t width = bigEndian(data, 16);
    const std::uint32_t height = bigEndian(data, 20);
    if (width == 0 || height == 0 || width > largest || height > largest) return std::nullopt;
    return Size{static_cast<double>(width), static_cast<double>(height)};
}

std::string nameWithoutExtension(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.rfind('.');
    if (dot != std::string_view::npos && dot > 0) name = name.substr(0, dot);
    return std::string(name);
}

double scaleOfName(std::string_view name) {
    const std::size_t length = name.size();
    if (length < 3 || name[length - 3] != '@' || name[length - 1] != 'x') return 1.0;
    const char digit = name[length - 2];
    return digit >= '1' && digit <= '9' ? static_cast<double>(digit - '0') : 1.0;
}

/// The scales a bundle may have, the best for the screen first.
std::vector<int> scalesFor(double screenScale) {
    std::vector<int> scales{1, 2, 3};
    std::ranges::sort(scales, [screenScale](int one, int other) {
        const bool oneServes = one >= screenScale;
        const bool otherServes = other >= screenScale;
        if (oneServes != otherServes) return oneServes;
        return oneServes ? one < other : one > other;
    });
    return scales;
}

}  // namespace

std::shared_ptr<UIImage> UIImage::imageNamed_inBundle(std::string_view name,
                                                      const std::shared_ptr<Bundle>& bundle) {
    if (name.empty()) return nullptr;
    const std::shared_ptr<Bundle> source = bundle ? bundle : Bundle::mainBundle();
    if (ResourceWatch* watch = ResourceWatch::current()) watch->imageAsked(source->bundlePath(), name);
    for (const int scale : scalesFor(UIScreen::mainScreen().scale())) {
        std::string resource(name);
        if (scale > 1) resource += "@" + std::to_string(scale) + "x";
        const std::string path = source->pathForResource_ofType(resource, "png");
        if (path.empty()) continue;
        if (auto image = imageWithContentsOfFile(path)) {
            image->name_ = std::string(name);
            return image;
        }
    }
    return nullptr;
}

std::shared_ptr<UIImage> UIImage::imageWithContentsOfFile(std::string_view path) {
    const Result<Data> data = FileManager::defaultManager().contentsAtPath(path);
    if (!data) return nullptr;
    const std::optional<Size> pixels = pixelSize(*data);
    if (!pixels) return nullptr;
    auto image = std::make_shared<UIImage>();
    image->name_ = nameWithoutExtension(path);
    image->path_ = std::string(path);
    image->scale_ = scaleOfName(image->name_);
    image->size_ = Size{pixels->width / image->scale_, pixels->height / image->scale_};
    return image;
}

std::shared_ptr<UIImage> UIImage::imageFilledWithColor(const std::shared_ptr<UIColor>& color, Size size) {
    if (!color) return nullptr;
    auto image = std::make_shared<UIImage>();
    image->fillColor_ = color;
    image->size_ = size;
    return image;
}

std::shared_ptr<UIImage> UIImage::withCornerRadius(double radius) const {
    auto image = std::make_shared<UIImage>();
    image->name_ = name_;
    image->path_ = path_;
    image->scale_ = scale_;
    image->size_ = size_;
    image->fillColor_ = fillColor_;
    image->cornerRadius_ = radius;
    return image;
}

}  // namespace platform
