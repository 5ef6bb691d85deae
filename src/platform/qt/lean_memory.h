// Keeps what the program has let go of, or will not look for again, out of its memory. Main thread.
#pragma once

#include <QObject>
#include <QTimer>

namespace orlix {

class LeanMemory : public QObject {
    Q_OBJECT
  public:
    /// What Qt may keep of pictures that nobody holds, KiB: some hundred icons at twice the resolution.
    static constexpr int pictureCacheKib = 1024;
    /// Blocks from this size on are the system's own pages and go back to it when they are freed, bytes; as
    /// many free bytes may stay at the end of an arena.
    static constexpr int ownPagesFrom = 128 * 1024;
    /// From the last call of `returnSoon` until free pages go back.
    static constexpr int returnAfterMs = 3000;

    /// To be made once, while the application exists. Bounds the picture cache: the style keeps a picture of
    /// every control of every dialog in it, under a key that no other dialog asks for. Where the C library
    /// has arenas, fixes what they may keep at their end: left alone, a single engine line of megabytes makes
    /// each of them hold on to as much for good.
    explicit LeanMemory(QObject* parent = nullptr);

    /// Something large has gone or is about to go: a dialog, an engine. Pages that are free between what
    /// stays are given back when this has not been called for a while.
    void returnSoon();

  Q_SIGNALS:
    void returned();

  private:
    QTimer timer_;
};

}  // namespace orlix
