// Two ways to change names in one step, which each system spells differently. Both return 0 or errno,
// allocate nothing and take no lock, so a process may call them between fork and its end.
#pragma once

namespace orlix {

/// Gives a file or folder another name that must be free: EEXIST otherwise. A volume that cannot do that in
/// one step is asked first and told then.
int moveName(int fromFolder, const char* from, int toFolder, const char* to);

/// Swaps what two names stand for. ENOTSUP where the system or the volume cannot.
int exchangeNames(int folderA, const char* a, int folderB, const char* b);

}  // namespace orlix
