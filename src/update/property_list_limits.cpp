#include "update/property_list_limits.h"

#include <QList>
#include <algorithm>
#include <optional>

namespace orlix {
namespace {

constexpr quint64 largestCost = 4U << 20U;  // bytes
constexpr quint64 valueCost = 64;           // bytes

// The form's numbers are big-endian and have as many bytes as the list says.
std::optional<quint64> readNumber(const QByteArray& bytes, quint64 at, quint64 width) {
    const auto size = static_cast<quint64>(bytes.size());
    if (width < 1 || width > 8 || at > size || width > size - at) return std::nullopt;
    quint64 number = 0;
    for (quint64 i = 0; i < width; ++i)
        number = number << 8U | static_cast<quint8>(bytes[static_cast<qsizetype>(at + i)]);
    return number;
}

// Walks the objects of a binary list from the topmost one, each only once.
class BinaryWalk {
  public:
    explicit BinaryWalk(const QByteArray& bytes) : bytes_(bytes) {}

    bool isHarmless() {
        constexpr quint64 trailerSize = 32;
        const auto size = static_cast<quint64>(bytes_.size());
        if (size < trailerSize) return false;
        const quint64 trailer = size - trailerSize;
        const auto number = [&](quint64 offset, quint64 width) {
            return readNumber(bytes_, trailer + offset, width).value_or(0);
        };
        offsetWidth_ = number(6, 1);
        referenceWidth_ = number(7, 1);
        objectCount_ = number(8, 8);
        const quint64 top = number(16, 8);
        offsetTable_ = number(24, 8);
        if (objectCount_ > size) return false;
        visited_.resize(static_cast<qsizetype>(objectCount_));
        const auto whole = visit(top, 1);
        return whole && whole->cost <= largestCost && whole->height <= deepestPropertyList;
    }

  private:
    struct Visited {
        bool isOpen = false;  // its own objects are being looked at
        int height = 0;       // levels, itself included; 0 before it was looked at
        quint64 cost = 0;
    };
    struct Content {
        quint64 kind;
        quint64 count;  // of bytes, characters or references
        quint64 at;
    };

    std::optional<Visited> visit(quint64 object, int depth) {
        if (object >= objectCount_ || depth > deepestPropertyList) return std::nullopt;
        Visited& known = visited_[static_cast<qsizetype>(object)];
        if (known.isOpen) return std::nullopt;
        if (known.height > 0) return known;
        const auto content = readContent(object);
        if (!content) return std::nullopt;
        Visited result{false, 1, valueCost};
        known.isOpen = true;
        if (!add(*content, depth, result)) return std::nullopt;
        known = result;
        return result;
    }

    bool add(const Content& content, int depth, Visited& result) {
        constexpr quint64 utf16 = 0x6;
        constexpr quint64 array = 0xA;
        constexpr quint64 dictionary = 0xD;
        const bool isContainer = content.kind == array || content.kind == dictionary;
        const quint64 width = isContainer ? referenceWidth_ : content.kind == utf16 ? 2 : 1;
        const auto size = static_cast<quint64>(bytes_.size());
        if (width == 0 || content.count > size) return false;
        const quint64 length = content.count * (content.kind == dictionary ? 2 : 1);
        if (length > (size - std::min(size, content.at)) / width) return false;
        if (!isContainer) {
            result.cost += length * width;
            return true;
        }
        for (quint64 i = 0; i < length; ++i) {
            const auto reference = readNumber(bytes_, content.at + i * width, width);
            const auto child = reference ? visit(*reference, depth + 1) : std::nullopt;
            if (!child) return false;
            result.height = std::max(result.height, child->height + 1);
            result.cost += child->cost;
            if (result.cost > largestCost) return false;
        }
        return true;
    }

    std::optional<Content> readContent(quint64 object) const {
        constexpr quint64 longCount = 0xF;
        constexpr quint64 integer = 0x1;
        if (offsetTable_ > static_cast<quint64>(bytes_.size())) return std::nullopt;
        const auto at = readNumber(bytes_, offsetTable_ + object * offsetWidth_, offsetWidth_);
        const auto marker = at ? readNumber(bytes_, *at, 1) : std::nullopt;
        if (!marker) return std::nullopt;
        const quint64 kind = *marker >> 4U;
        const quint64 low = *marker & 0xFU;
        switch (kind) {
            case 0x0:  // truth values and the like
                return Content{kind, 0, *at + 1};
            case integer:
            case 0x2:  // real
            case 0x3:  // date
                return low > 4 ? std::nullopt : std::optional(Content{kind, quint64{1} << low, *at + 1});
            case 0x8:  // identifier
                return Content{kind, low + 1, *at + 1};
            case 0x4:  // data
            case 0x5:  // ASCII text
            case 0x6:  // UTF-16 text
            case 0xA:  // array
            case 0xD:  // dictionary
                break;
            default: return std::nullopt;
        }
        if (low != longCount) return Content{kind, low, *at + 1};
        const auto countMarker = readNumber(bytes_, *at + 1, 1);
        if (!countMarker || *countMarker >> 4U != integer || (*countMarker & 0xFU) > 3) return std::nullopt;
        const quint64 width = quint64{1} << (*countMarker & 0xFU);
        const auto count = readNumber(bytes_, *at + 2, width);
        return count ? std::optional(Content{kind, *count, *at + 2 + width}) : std::nullopt;
    }

    const QByteArray& bytes_;
    quint64 offsetWidth_ = 0;
    quint64 referenceWidth_ = 0;
    quint64 objectCount_ = 0;
    quint64 offsetTable_ = 0;
    QList<Visited> visited_;
};

// The depth by the opening and closing tags, whether they fit together or not.
bool isShallowXml(const QByteArray& bytes) {
    int depth = 0;
    qsizetype at = 0;
    const auto startsWith = [&](const char* text) {
        return QByteArrayView(bytes).sliced(at).startsWith(text);
    };
    const auto skipBehind = [&](const char* end) {
        const qsizetype found = bytes.indexOf(end, at);
        at = found < 0 ? bytes.size() : found + 1;
    };
    while ((at = bytes.indexOf('<', at)) >= 0 && at < bytes.size()) {
        if (startsWith("<!--")) {
            skipBehind("-->");
        } else if (startsWith("<![CDATA[")) {
            skipBehind("]]>");
        } else {
            const qsizetype end = bytes.indexOf('>', at);
            if (end < 0) return true;  // no list at all
            if (startsWith("</array") || startsWith("</dict")) --depth;
            if ((startsWith("<array") || startsWith("<dict")) && bytes[end - 1] != '/' &&
                ++depth > deepestPropertyList)
                return false;
            at = end;
        }
    }
    return true;
}

}  // namespace

bool isBinaryPropertyList(const QByteArray& bytes) {
    return bytes.startsWith("bplist");
}

bool isHarmlessPropertyList(const QByteArray& bytes) {
    return isBinaryPropertyList(bytes) ? BinaryWalk(bytes).isHarmless() : isShallowXml(bytes);
}

}  // namespace orlix
