#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vex {

/// Names and addresses as they stand in requests and on the command line. An address is four decimal numbers,
/// or something with a colon in it; no name that somebody could register looks like either.

/// "127.0.0.1", "::1", "::ffff:127.0.0.1", "localhost" and their like: reached from this machine alone.
[[nodiscard]] bool IsLoopback(std::string_view szAddress);
[[nodiscard]] bool IsAddress(std::string_view szText);

/// The name in a Host header, in small letters, without port and without the brackets of an IPv6 address;
/// empty where it is none.
[[nodiscard]] std::string HostName(std::string_view szHost);

/// Whether a page that was asked for under this Host header is ours: a name of the machine itself, where the
/// server listens to more than the machine any address, or one of the names given. A page on somebody else's
/// name that was pointed to this machine has none of these.
[[nodiscard]] bool HostIsOurs(std::string_view szHost, bool boolLoopback,
                              const std::vector<std::string>& names);

/// Whether the Origin header of a request names the very host it was sent to.
[[nodiscard]] bool OriginIsHost(std::string_view szOrigin, std::string_view szHost);

/// Whom an address belongs to: itself, or for an IPv6 address its first 64 bits.
[[nodiscard]] std::string SourceOf(const std::string& szAddress);

}  // namespace vex
