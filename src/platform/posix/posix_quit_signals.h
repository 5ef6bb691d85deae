// Turns the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) into a Qt signal. Owned by the
// composition root, at most one object at a time; main thread only.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <array>

namespace orlix {

class PosixQuitSignals : public QObject {
    Q_OBJECT
  public:
    /// From now on the three signals no longer end the program by themselves.
    explicit PosixQuitSignals(QObject* parent = nullptr);
    /// Gives the signals back the effect that they have without this object.
    ~PosixQuitSignals() override;

  Q_SIGNALS:
    void
    received();  ///< on the main thread, through the event loop; several signals at once may count as one

  private:
    void drain();

    std::array<int, 2> pipe_{-1, -1};
    QSocketNotifier notifier_{QSocketNotifier::Read};
};

}  // namespace orlix
