// SPDX-License-Identifier: MIT
// What operations and device tools print to the standard streams, kept from the person's eyes.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace orloctl {

class Noise {
public:
    // Catches it from now on, or lets it pass.
    explicit Noise(bool passes);
    ~Noise();
    Noise(const Noise&) = delete;
    Noise& operator=(const Noise&) = delete;

    // What has been caught since the last time.
    std::string take();

private:
    std::unique_ptr<FILE, int (*)(FILE*)> caught_{nullptr, &fclose};
    int before_[2] = {-1, -1}; // standard output and error as they were
};

} // namespace orloctl
