// Colours, type and spacing of the whole window in one place, light and dark, switching live with the system.
// Owned by the composition root; main thread only.
#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPalette>
#include <QRectF>
#include <QString>

class QPainter;

namespace orlix {

enum class ColorRole {
    window,
    panel,
    card,
    hairline,
    text,
    secondary,
    accent,
    accentText,
    good,
    caution,
    bad,
    console,
    consoleText,
};
enum class TextStyle { caption, body, bodyStrong, sectionHead, title, clock, monospaced };

/// Spacing in steps of four and the two corner radii, in device-independent pixels.
namespace metrics {
inline constexpr int space1 = 4;
inline constexpr int space2 = 8;
inline constexpr int space3 = 12;
inline constexpr int space4 = 16;
inline constexpr int space6 = 24;
inline constexpr int controlRadius = 6;
inline constexpr int cardRadius = 10;
}  // namespace metrics

class Theme : public QObject {
    Q_OBJECT
  public:
    enum class Scheme { light, dark };

    static Theme& shared();
    static void registerShared(Theme* instance);

    explicit Theme(QObject* parent = nullptr);  ///< follows the application's palette
    ~Theme() override;

    Scheme scheme() const { return scheme_; }
    /// Fixes the scheme (tests and pictures); the system is then not followed any more.
    void setScheme(Scheme scheme);
    QColor color(ColorRole role) const { return color(role, scheme_); }
    static QColor color(ColorRole role, Scheme scheme);
    /// The hairline as the opaque colour that it makes on `ground`. Qt draws an opaque line at once; a
    /// see-through one of more than some fifty rows it hands to other threads in parts, and waits for them.
    QColor hairlineOn(const QColor& ground) const;
    /// Likewise for the line around a shape of colour `inside` that stands on `outside`: half over each.
    QColor hairlineBetween(const QColor& inside, const QColor& outside) const;
    /// `role` at `opacity` (0..1) laid over `ground`: an opaque colour, for tinted pills and hovered rows.
    QColor tint(ColorRole role, ColorRole ground, qreal opacity) const;
    /// The colour of `role` for text on `ground`, moved towards the text colour no further than 4.5 : 1
    /// needs: for coloured text on a tint of its own colour.
    QColor inkOn(ColorRole role, const QColor& ground) const;
    /// The system's interface font in the size and weight of `style`; pixel sizes.
    static QFont font(TextStyle style);
    /// Sets installed families in place of the two generic names that stand where no desktop has named
    /// others. Qt would load every size twice, once for the generic name and once for the family behind it.
    /// Where no desktop has named a size either, what the style draws (menus) gets the size of `body`. With
    /// an empty name the generic one stays.
    static void nameGenericFamilies(const QString& sansSerif, const QString& monospace);
    /// The tokens as a palette, for the standard widgets inside a window (fields, menus, scroll bars).
    QPalette palette() const;

  Q_SIGNALS:
    void changed();

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    Scheme scheme_ = Scheme::light;
    bool followsSystem_ = true;
};

/// WCAG contrast ratio of two opaque colours, 1 to 21.
double contrastRatio(const QColor& text, const QColor& ground);
/// `top` with its alpha laid over the opaque `ground`.
QColor blended(const QColor& top, const QColor& ground);

/// Width of `text` when each digit takes the room of the widest one, so that a running number does not shake.
qreal tabularWidth(const QFont& font, const QString& text);
/// Draws `text` in the painter's font and pen with digits in cells of equal width.
void drawTabularText(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text);

}  // namespace orlix
