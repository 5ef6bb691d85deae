// The desktop's session bus. Qt connects to it when the first widget tells assistive technology its name, on
// the main thread, and waits.
#pragma once

namespace orlix {

/// Without a bus of the desktop's, keeps the D-Bus library from starting one: nobody would listen there, it
/// would outlive the program, and the attempt alone costs the start milliseconds. To be called before there
/// are threads, as it changes the environment.
void startNoSessionBus();

/// Begins to connect to the desktop's bus in the background, if there is one. Needs the application object.
void connectToSessionBusAhead();

}  // namespace orlix
