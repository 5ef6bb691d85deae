#include "updater/image_attachment.h"

#include <QFile>

#include "update/application_search.h"
#include "update/update_error.h"

namespace orlix {
namespace {

// The description is a sentence of its own; here it goes on after a colon.
std::string reasonOf(const UpdateError& error) {
    std::string text = error.errorDescription().trimmed().toStdString();
    while (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

}  // namespace

ImageAttachment::~ImageAttachment() {
    if (!image_) return;
    try {
        images_.detach(*image_);
    } catch (const UpdateError&) {
        try {
            images_.detachByForce(*image_);
        } catch (const UpdateError&) {
        }
    }
}

Fault ImageAttachment::attach(const std::string& imagePath) {
    try {
        image_ = images_.attach(QFile::decodeName(imagePath.c_str()));
        return std::nullopt;
    } catch (const UpdateError& error) {
        return reasonOf(error);
    }
}

Fault ImageAttachment::findApplication(const std::string& identifier, std::string& path) const {
    try {
        path =
            QFile::encodeName(orlix::findApplication(image_->mountPath, QString::fromStdString(identifier)))
                .toStdString();
        return std::nullopt;
    } catch (const UpdateError& error) {
        return reasonOf(error);
    }
}

}  // namespace orlix
