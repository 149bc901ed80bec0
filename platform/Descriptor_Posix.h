// SPDX-License-Identifier: MIT
// A file descriptor with an owner.
#pragma once

#include <unistd.h>

namespace platform {

// Closes a descriptor when it goes out of scope.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return number_ != none; }
    int Number() const { return number_; }

    // False when the system reports an error that it had kept until now.
    bool Close() {
        const int number = number_;
        number_ = none;
        return number == none || close(number) == 0;
    }

  private:
    static constexpr int none = -1;

    int number_;
};

} // namespace platform
