// The plug-in's HTTP calls. Each blocks its caller until the transfer ends or 120 seconds have passed. Safe on any
// thread and concurrently.
//
// Each returns true when an answer with a status below 400 arrived. `response` receives the body of any answer, byte
// for byte, and is unchanged when there is none. On failure `error` is set to a text that begins with "ERROR:"; it is
// never cleared. Texts are UTF-8 and sent verbatim. A URL that the platform cannot parse fails before anything is sent.
#pragma once

#include <cstddef>
#include <string>

namespace Network {

/// The largest sizes of a decoded answer, in bytes. On Linux a larger answer is an error; on macOS there is no limit.
inline constexpr std::size_t kShortAnswer = std::size_t{1} << 20;
inline constexpr std::size_t kLongAnswer = std::size_t{512} << 20;

/// Posts `body` as JSON. It is not copied, so move a large one in.
bool Post(const std::string& url, std::string body, std::string& response, std::string& error,
          std::size_t answerLimit = kLongAnswer);

bool Get(const std::string& url, std::string& response, std::string& error, std::size_t answerLimit = kLongAnswer);

/// Posts the bytes of the regular file at `filePath`. Accepts an answer of at most kShortAnswer bytes.
bool PostFile(const std::string& url, const std::string& filePath, std::string& response, std::string& error);

/// Posts a form with the fields "licenseKey" and "filename" and the file at `filePath` as "file". `filename` is not
/// escaped.
bool PostMultipart(const std::string& url, const std::string& accountKey, const std::string& filename,
                   const std::string& filePath, std::string& response, std::string& error);

}  // namespace Network
