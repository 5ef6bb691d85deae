#include "ui/first_icons.h"

#include <QThreadPool>

#include "ui/icons.h"

namespace orlix {
namespace {

constexpr SizedIcon icons[] = {
    {Icon::person, 22},      {Icon::engine, 22},  {Icon::clock, 14},  // banners
    {Icon::gameState, 20},   {Icon::engine, 20},  {Icon::automatch, 20},
    {Icon::newGame, 20},     {Icon::engines, 20}, {Icon::exportNotation, 20},  // tabs
    {Icon::chevronDown, 14},                                                   // language
    {Icon::flip, 18},        {Icon::undo, 18},    {Icon::pause, 18},
    {Icon::resign, 18},      {Icon::plus, 18},  // bottom bar
};

}  // namespace

void startDrawingFirstIcons(qreal devicePixelRatio) {
    QThreadPool::globalInstance()->start([devicePixelRatio] { prepareIcons(icons, devicePixelRatio); });
}

}  // namespace orlix
