// A card over the board that says that an engine's seat in the game is empty, and offers to fill it. Owned by
// the main view; main thread only. Hidden while every seat is taken.
#pragma once

#include <QWidget>
#include <optional>

namespace orlix {

class EngineManager;
struct EngineConfiguration;
class GameManager;
class LocalizationManager;
class PanelButton;
class TextLabel;
class Theme;

class EngineNoticeView : public QWidget {
    Q_OBJECT
  public:
    static constexpr int preferredWidth = 420;

    /// All references outlive the view.
    EngineNoticeView(GameManager& game, EngineManager& engines, LocalizationManager& loc, Theme& theme,
                     QWidget* parent = nullptr);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

  Q_SIGNALS:
    void sizeChanged();  ///< the height for a width is another one now

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void refresh();
    void chooseFile();
    void add(const QString& path);
    void seat(const EngineConfiguration& engine);
    bool isAnEmptySeatWithoutEngine() const;
    QString message() const;

    GameManager& game_;
    EngineManager& engines_;
    LocalizationManager& loc_;
    Theme& theme_;
    TextLabel* text_;
    PanelButton* addEngine_;
    PanelButton* newGame_;
    PanelButton* close_;
    bool isBusy_ = false;      ///< a file is being chosen or checked
    bool isChecking_ = false;  ///< the chosen file is being checked
    /// The number of plies at which the user closed the card: it comes back once the game has moved on.
    std::optional<std::size_t> dismissedAt_;
    std::optional<QString> failure_;
};

}  // namespace orlix
