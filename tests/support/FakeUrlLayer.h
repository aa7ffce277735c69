// A URL layer that answers every transfer as its test says, from another thread, and records what it was asked for.
#pragma once

#include <functional>
#include <future>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "net/Transfer.h"

class FakeUrlLayer {
 public:
  struct Call {
    std::string url;
    std::string method;
    std::map<std::string, std::string> headers;
    std::string body;
    const void* bodyAddress;  ///< where the body was when it arrived here
  };

  FakeUrlLayer() { Current() = this; }
  ~FakeUrlLayer() {
    for (auto& thread : threads_) thread.join();
    Current() = nullptr;
  }

  /// The one that serves the seam.
  static FakeUrlLayer*& Current() {
    static FakeUrlLayer* current = nullptr;
    return current;
  }

  std::vector<Call> calls;
  Network::Outcome answer;
  std::shared_future<void> before;  ///< what answers wait for, if anything

  void Take(Call call, std::function<void(Network::Outcome)> completion) {
    calls.push_back(std::move(call));
    threads_.emplace_back([before = before, completion = std::move(completion), outcome = answer]() mutable {
      if (before.valid()) before.wait();
      completion(std::move(outcome));
    });
  }

 private:
  std::vector<std::thread> threads_;
};
