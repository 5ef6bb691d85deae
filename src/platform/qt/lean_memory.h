// Keeps what the program has let go of, or will not look for again, out of its memory. Main thread.
#pragma once

namespace orlix {

/// What Qt may keep of pictures that nobody holds, KiB: some hundred icons at twice the resolution.
inline constexpr int pictureCacheKib = 1024;
/// Blocks from this size on are the system's own pages and go back to it when they are freed, bytes; as many
/// free bytes may stay at the end of an arena.
inline constexpr int ownPagesFrom = 128 * 1024;

/// To be called once, early, while the application exists. Bounds the picture cache: the style keeps a
/// picture of every control of every dialog in it, under a key that no other dialog asks for. Where the C
/// library has arenas, fixes what they may keep: left alone, a single engine line of megabytes makes each of
/// them hold on to as much for good.
void keepMemoryLean();

}  // namespace orlix
