// A URL layer that gives every transfer the test's answer, from another thread, and records the requests.
#pragma once

#include <functional>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "net/Transfer.h"

class FakeUrlLayer {
 public:
  FakeUrlLayer() { Current() = this; }
  ~FakeUrlLayer() {
    for (auto& thread : threads_) thread.join();
    Current() = nullptr;
  }

  /// The fake that the stand-in for the URL session uses.
  static FakeUrlLayer*& Current() {
    static FakeUrlLayer* current = nullptr;
    return current;
  }

  std::vector<std::string> calls;     ///< "POST http://a.example", lines of headers by name, an empty one, the body
  const void* bodyAddress = nullptr;  ///< of the last body
  Network::Outcome answer;
  std::shared_future<void> before;  ///< what answers wait for, if anything

  void Take(std::string call, const void* address, std::function<void(Network::Outcome)> completion) {
    bodyAddress = address;
    calls.push_back(std::move(call));
    threads_.emplace_back([before = before, completion = std::move(completion), outcome = answer]() mutable {
      if (before.valid()) before.wait();
      completion(std::move(outcome));
    });
  }

 private:
  std::vector<std::thread> threads_;
};
