#pragma once

#include <cstdint>

namespace quenlatrix::meta_object {

// What an operation of a Handler answers. The values are a contract with the host.
using HandlerStatus = std::uint32_t;

namespace handler_status {

inline constexpr HandlerStatus kSuccess = 0;
// The object's identity is not valid.
inline constexpr HandlerStatus kInvalidIdentity = 1;
// Class, constructor or instance could not be obtained, or there is no Java environment.
inline constexpr HandlerStatus kObjectNotMade = 3;
// A null reference to bind, or no Java environment.
inline constexpr HandlerStatus kNothingToBind = 4;
// Introspection or description failed, or there is no Java environment.
inline constexpr HandlerStatus kIntrospectionFailed = 5;
// No method call is open in the context, or the call failed.
inline constexpr HandlerStatus kCallFailed = 7;
// Release on an object whose count is 0 already.
inline constexpr HandlerStatus kReleasedTwice = 9;
// The host's cache holds no description of the object's class.
inline constexpr HandlerStatus kNoClassDescription = 10;
// A meta type keyword that nobody knows.
inline constexpr HandlerStatus kUnknownTypeKeyword = 12;
// No collection is open in the context, or it could not be walked.
inline constexpr HandlerStatus kNoCollection = 13;
// The host's security check refused the object.
inline constexpr HandlerStatus kRefused = 14;
// The last reference is gone, and the real object with it: a good end, not a failure.
inline constexpr HandlerStatus kLastReferenceReleased = 0xFFE0;

}  // namespace handler_status

}  // namespace quenlatrix::meta_object
