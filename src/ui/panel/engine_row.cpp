#include "ui/panel/engine_row.h"

#include <QFileInfo>
#include <QPointer>

#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"
#include "ui/panel/elided_label.h"
#include "ui/panel/elo_editor.h"
#include "ui/panel/icon_button.h"
#include "ui/theme.h"

namespace orlix {

EngineRow::EngineRow(const EngineConfiguration& engine, const PanelContext& context, QWidget* parent)
    : Card(context.theme, parent), context_(context), engine_(engine) {
    Theme& theme = context.theme;
    name_ = new ElidedLabel(TextStyle::bodyStrong, ColorRole::text, theme, this);
    elo_ = new TextLabel(TextStyle::body, ColorRole::secondary, theme, this);
    path_ = new ElidedLabel(TextStyle::caption, ColorRole::secondary, theme, this);
    test_ = new PanelButton(PanelButton::Look::onCard, PanelButton::Arrangement::row, theme, this);
    edit_ = new IconButton(Icon::tune, IconButton::Look::plain, theme, this);
    remove_ = new IconButton(Icon::trash, IconButton::Look::destructive, theme, this);
    outcome_ = new TextLabel(TextStyle::body, ColorRole::secondary, theme, this);
    name_->setObjectName(QStringLiteral("engineName"));
    elo_->setObjectName(QStringLiteral("engineElo"));
    elo_->setSingleLine(true);
    elo_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    test_->setObjectName(QStringLiteral("testEngine"));
    edit_->setObjectName(QStringLiteral("editElo"));
    edit_->setCheckable(true);
    remove_->setObjectName(QStringLiteral("removeEngine"));
    outcome_->setObjectName(QStringLiteral("testOutcome"));
    outcome_->hide();

    auto* head = new QHBoxLayout;
    head->setSpacing(metrics::space3);
    head->addWidget(name_, 1);
    head->addWidget(elo_);
    auto* titles = new QVBoxLayout;
    titles->setSpacing(2);
    titles->addLayout(head);
    titles->addWidget(path_);
    content()->addLayout(titles);
    auto* commands = new QHBoxLayout;
    commands->setSpacing(metrics::space1);
    commands->addWidget(test_, 1);
    commands->addSpacing(metrics::space2);
    commands->addWidget(edit_);
    commands->addWidget(remove_);
    content()->addLayout(commands);
    content()->addWidget(outcome_);

    connect(test_, &QAbstractButton::clicked, this, &EngineRow::startTest);
    connect(edit_, &QAbstractButton::clicked, this, [this](bool isOn) { Q_EMIT editingToggled(isOn); });
    connect(remove_, &QAbstractButton::clicked, this, &EngineRow::removalRequested);
    connect(&context_.loc, &LocalizationManager::changed, this, &EngineRow::retranslate);
    connect(&context_.theme, &Theme::changed, this, &EngineRow::showTest);
    showEngine();
    retranslate();
}

void EngineRow::setEngine(const EngineConfiguration& engine) {
    if (engine == engine_) return;
    engine_ = engine;
    showEngine();
    retranslate();
}

void EngineRow::showEngine() {
    name_->setText(engine_.name);
    path_->setText(engine_.executablePath);
    elo_->setText(engine_.limitElo ? eloText(engine_.elo) : QStringLiteral("Max ELO"));
    setAccessibleName(engine_.name);
    if (editor_) editor_->setStrength(engine_.limitElo, engine_.elo);
}

void EngineRow::setEditing(bool isEditing) {
    edit_->setChecked(isEditing);
    if (isEditing && !editor_) {
        editor_ = new EloEditor("limit_elo", context_, this);
        editor_->setPartNames(QStringLiteral("engine"));
        editor_->setStrength(engine_.limitElo, engine_.elo);
        content()->addWidget(editor_);
        connect(editor_, &EloEditor::edited, this, [this](bool limitElo, qint64 elo) {
            context_.engines.updateEngineConfig(engine_.id, limitElo, elo);
        });
    }
    if (editor_) editor_->setVisible(isEditing);
}

void EngineRow::focusRemoval() {
    remove_->setFocus(Qt::TabFocusReason);
}

void EngineRow::startTest() {
    if (testState_ == TestState::running) return;
    testState_ = TestState::running;
    showTest();
    // The engine may be removed, and the panel go, while the test still runs.
    const QPointer<EngineRow> self(this);
    context_.engines.testEngine(engine_.executablePath,
                                [self](const EngineManager::EngineTestResult& result) {
                                    if (self) self->finishTest(result);
                                });
}

void EngineRow::finishTest(const EngineManager::EngineTestResult& result) {
    testState_ = result.success ? TestState::passed : TestState::failed;
    if (result.success) {
        const QString name = result.engineName.value_or(QFileInfo(engine_.executablePath).fileName());
        testText_ = QStringLiteral("Test OK: ") + name;
    } else {
        testText_ =
            QStringLiteral("Test Failed: ") + result.error.value_or(QStringLiteral("No response to 'uci'"));
    }
    showTest();
}

void EngineRow::showTest() {
    ColorRole role = ColorRole::secondary;
    if (testState_ == TestState::passed) role = ColorRole::good;
    if (testState_ == TestState::failed) role = ColorRole::bad;
    outcome_->setRole(role);
    outcome_->setText(testState_ == TestState::running ? context_.loc.text(ExtraText::checkingEngine)
                                                       : testText_);
    outcome_->setVisible(testState_ != TestState::none);
    // Not disabled: that would take the keyboard away from it. A second press does nothing.
    test_->setSymbol(testState_ == TestState::running ? Icon::clock : Icon::check);
}

void EngineRow::retranslate() {
    const auto& loc = context_.loc;
    test_->setLabel(loc.text("test_engine"));
    test_->setAccessibleName(loc.text("test_engine") + QStringLiteral(": ") + engine_.name);
    edit_->setCaption(loc.text("elo_rating"), engine_.name);
    remove_->setCaption(loc.text("remove_engine"), engine_.name);
    showTest();
}

}  // namespace orlix
