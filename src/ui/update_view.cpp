#include "ui/update_view.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "l10n/localization_manager.h"
#include "ui/controls/activity_bar.h"
#include "ui/controls/notes_view.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/scrolled_label.h"
#include "ui/controls/text_label.h"
#include "ui/keyboard_order.h"
#include "ui/theme.h"
#include "ui/window_shade.h"
#include "update/update_controller.h"

namespace orlix {
namespace {

constexpr int padding = metrics::space6;
constexpr int spacing = metrics::space4;
constexpr int buttonHeight = 36;
constexpr int leastNotesHeight = 80;
constexpr int mostNotesHeight = 180;
/// Two lines on their card: what is left of the notes when a long message needs the room.
constexpr int crowdedNotesHeight = 58;

// The feed's words are bounded by nothing but the feed's own length.
constexpr int longestName = 40;
constexpr int longestMessage = 2000;
constexpr int longestNotes = 20'000;

QString shortened(const QString& text, int most) {
    return text.size() <= most ? text : text.left(most) + u'…';
}

/// A version or build on one line.
QString nameOf(const QString& text) {
    return shortened(text.left(longestName + 1).simplified(), longestName);
}

QString messageText(const UpdateMessage& message, const LocalizationManager& loc) {
    const auto with = [&](ExtraText text, const QString& detail) { return loc.text(text).arg(detail); };
    const QString reason = shortened(message.detail, longestMessage);
    switch (message.kind) {
        case UpdateMessage::Kind::asItStands: return reason;
        case UpdateMessage::Kind::checking: return loc.text(ExtraText::updateChecking);
        case UpdateMessage::Kind::upToDate: return with(ExtraText::updateUpToDate, nameOf(message.detail));
        case UpdateMessage::Kind::checkFailed: return with(ExtraText::updateCheckFailed, reason);
        case UpdateMessage::Kind::verifying: return with(ExtraText::updateVerifying, nameOf(message.detail));
        case UpdateMessage::Kind::verified: return loc.text(ExtraText::updateVerified);
        case UpdateMessage::Kind::updaterNotStarted: return with(ExtraText::updaterNotStarted, reason);
    }
    return {};
}

/// A sheet belongs to the system there: it hangs it into the window and dims what is behind.
bool hasSheetsOfItsOwn() {
    return QGuiApplication::platformName() == QLatin1String("cocoa");
}

}  // namespace

UpdateView::UpdateView(UpdateController& updates, LocalizationManager& loc, Theme& theme, bool isAnimated,
                       QWidget* window)
    : QDialog(window, Qt::Sheet),
      controller_(updates),
      loc_(loc),
      theme_(theme),
      shade_(new WindowShade(window)),
      title_(new TextLabel(TextStyle::title, ColorRole::text, theme, this)),
      release_(new TextLabel(TextStyle::body, ColorRole::text, theme, this)),
      notes_(new NotesView(theme, this)),
      unverifiable_(new TextLabel(TextStyle::body, ColorRole::caution, theme, this)),
      message_(new ScrolledLabel(TextStyle::body, ColorRole::secondary, theme, this)),
      activity_(new ActivityBar(theme, this)),
      close_(new PanelButton(PanelButton::Look::secondary, PanelButton::Arrangement::row, theme, this)),
      checkAgain_(new PanelButton(PanelButton::Look::secondary, PanelButton::Arrangement::row, theme, this)),
      install_(new PanelButton(PanelButton::Look::primary, PanelButton::Arrangement::row, theme, this)) {
    setObjectName(QStringLiteral("updateSheet"));
    if (!hasSheetsOfItsOwn()) setWindowFlag(Qt::FramelessWindowHint);
    setWindowModality(Qt::WindowModal);
    setFixedSize(fixedSize);
    setFocusPolicy(Qt::StrongFocus);  // so that no button is marked before the user has asked for it
    activity_->setAnimated(isAnimated);
    close_->setObjectName(QStringLiteral("closeUpdates"));
    checkAgain_->setObjectName(QStringLiteral("checkAgain"));
    install_->setObjectName(QStringLiteral("installUpdate"));

    connect(close_, &PanelButton::clicked, this, &UpdateView::reject);
    connect(checkAgain_, &PanelButton::clicked, this, [this] { controller_.checkForUpdates(false); });
    connect(install_, &PanelButton::clicked, this, [this] { controller_.install(); });
    connect(&controller_, &UpdateController::changed, this, &UpdateView::refresh);
    connect(&loc_, &LocalizationManager::changed, this, &UpdateView::refresh);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    window->installEventFilter(this);
    refresh();
}

UpdateView::~UpdateView() = default;

void UpdateView::reject() {
    controller_.setPresented(false);
}

void UpdateView::refresh() {
    setWindowTitle(loc_.text(ExtraText::softwareUpdate));
    title_->setText(loc_.text(ExtraText::softwareUpdate));
    showRelease();
    showMessage();

    const bool isBusy = controller_.isChecking() || controller_.isInstalling();
    activity_->setVisible(isBusy);
    activity_->setAccessibleName(message_->text());
    close_->setLabel(loc_.text("btn_close"));
    checkAgain_->setLabel(loc_.text(ExtraText::checkAgain));
    checkAgain_->setEnabled(!isBusy);
    layOut();

    // A window that is closed has no sheet; it gets it back when it is shown again.
    const bool isPresented = controller_.isPresented() && parentWidget()->isVisible();
    if (isPresented == isVisible()) return;
    if (isPresented) {
        place();
        setFocus();
    }
    shade_->setVisible(isPresented && !hasSheetsOfItsOwn());
    shade_->raise();
    const bool hadKeyboard = isActiveWindow();
    setVisible(isPresented);
    // Where no window manager runs, nobody else gives the keyboard back.
    if (!isPresented && hadKeyboard && parentWidget()->isVisible()) parentWidget()->activateWindow();
}

void UpdateView::showRelease() {
    const std::optional<UpdateInfo>& update = controller_.availableUpdate();
    const bool isInstallable = update && update->supportsAutomaticInstallation();
    const QString notes = update && update->releaseNotes ? *update->releaseNotes : QString();
    if (update) {
        const QString build = update->build ? nameOf(*update->build) : QStringLiteral("?");
        release_->setText(loc_.text(ExtraText::releaseAvailable).arg(nameOf(update->version), build));
    }
    release_->setVisible(update.has_value());
    notes_->setCaption(loc_.text(ExtraText::releaseNotes));
    notes_->setText(shortened(notes, longestNotes));
    notes_->setVisible(!notes.isEmpty());
    unverifiable_->setText(loc_.text(ExtraText::releaseUnverifiable));
    unverifiable_->setVisible(update && !isInstallable);
    install_->setLabel(loc_.text(ExtraText::installRelease));
    install_->setVisible(update.has_value());
    install_->setEnabled(isInstallable && !controller_.isInstalling());
}

void UpdateView::showMessage() {
    const std::optional<UpdateMessage>& message = controller_.messageParts();
    if (message) message_->setText(messageText(*message, loc_));
    message_->setRole(controller_.failed() ? ColorRole::bad : ColorRole::secondary);
    message_->setVisible(message.has_value());
}

// The size is fixed and no text is cut: the message has what it needs as long as the notes keep two lines,
// the notes have the rest, and whatever is longer scrolls.
void UpdateView::layOut() {
    const QRect inside = rect().adjusted(padding, padding, -padding, -padding);
    const int width = inside.width();
    const bool hasNotes = !notes_->isHidden();
    const bool hasMessage = !message_->isHidden();

    int y = inside.top();
    const auto stack = [&](QWidget* part, int height) {
        if (part->isHidden()) return;
        part->setGeometry(inside.left(), y, width, height);
        y += height + spacing;
    };
    stack(title_, title_->heightForWidth(width));
    stack(release_, release_->heightForWidth(width));

    int room = inside.bottom() + 1 - buttonHeight - spacing - y;
    if (!unverifiable_->isHidden()) room -= unverifiable_->heightForWidth(width) + spacing;
    // The bar belongs to the message above it and stands closer to that.
    if (!activity_->isHidden()) room -= ActivityBar::thickness + (hasMessage ? metrics::space2 : spacing);

    int messageHeight = 0;
    if (hasMessage) {
        const int most = hasNotes ? room - crowdedNotesHeight - spacing : room;
        messageHeight = std::clamp(message_->heightForText(width), 0, std::max(0, most));
        room -= messageHeight + spacing;
    }
    const int notesHeight = std::max(leastNotesHeight, notes_->heightForText(width, mostNotesHeight));
    stack(notes_, std::min(room, notesHeight));
    stack(unverifiable_, unverifiable_->heightForWidth(width));
    stack(message_, messageHeight);
    if (hasMessage) y -= spacing - metrics::space2;
    stack(activity_, ActivityBar::thickness);
    layOutButtons();
}

void UpdateView::layOutButtons() {
    const QRect row(padding, height() - padding - buttonHeight, width() - 2 * padding, buttonHeight);
    int right = row.right() + 1;
    for (PanelButton* button : {install_, checkAgain_, close_}) {
        if (button->isHidden()) continue;
        const int wide = button->sizeHint().width() + metrics::space2;
        button->setGeometry(right - wide, row.top(), wide, row.height());
        right -= wide + metrics::space2;
    }
}

void UpdateView::place() {
    if (hasSheetsOfItsOwn()) return;
    move(parentWidget()->geometry().center() - rect().center());
}

bool UpdateView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget()) {
        switch (event->type()) {
            case QEvent::Move:
            case QEvent::Resize: place(); break;
            // After the window's own handling, so that the sheet comes to stand above it.
            case QEvent::Show:
            case QEvent::Hide:
                QMetaObject::invokeMethod(this, &UpdateView::refresh, Qt::QueuedConnection);
                break;
            default: break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

// A button that has the focus presses itself on Return; Space comes here from it.
void UpdateView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!event->isAutoRepeat() && install_->isVisible()) install_->click();
            return;
        case Qt::Key_Space:
            if (auto* button = qobject_cast<QAbstractButton*>(focusWidget());
                button != nullptr && !event->isAutoRepeat())
                button->click();
            return;
        default: QDialog::keyPressEvent(event);
    }
}

bool UpdateView::focusNextPrevChild(bool next) {
    return moveKeyboardFocus(*this, next);
}

void UpdateView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), theme_.color(ColorRole::panel));
    if (hasSheetsOfItsOwn()) return;
    painter.setPen(theme_.hairlineOn(theme_.color(ColorRole::panel)));
    // Along the middle of the outermost pixel, so that it is whole on dense screens too.
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace orlix
