// What the module with the transport offers to the program.
#pragma once

namespace orlix {

class HttpsTransport;

/// Of the function below.
inline constexpr const char* makeHttpsTransportName = "orlixMakeHttpsTransport";
/// The caller owns the result.
using MakeHttpsTransport = HttpsTransport* (*)();

}  // namespace orlix
