// SPDX-License-Identifier: MIT
// The files of the access point that operations change, as they were at one time.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace orlo::test {

class DeviceFiles {
public:
    // Remembers them.
    DeviceFiles();

    // Makes them again what they were; returns the paths of those that were not there then.
    std::vector<std::string> restore() const;

private:
    std::map<std::string, std::string> contents_; // by path; a folder's ends in '/'
};

} // namespace orlo::test
