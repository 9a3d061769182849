// SPDX-License-Identifier: MIT
// JSON for a record, made from the same table that reads it: values at the edges of what is
// accepted, beyond them, and now and then something else altogether.
#pragma once

#include "json.h"
#include "records/field.h"

#include <random>

namespace fuzz {

class Wild {
public:
    explicit Wild(unsigned seed) : random_(seed) {}

    // Changes one thing somewhere in what a form describes; NULL becomes something.
    orloctl::Json disturb(orloctl::Json json, const orloctl::Form& form);

    bool one_in(unsigned n) { return below(n) == 0; }

private:
    unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }

    template <class T>
    const T& any_of(const std::vector<T>& choice) {
        return choice[below(static_cast<unsigned>(choice.size()))];
    }

    json_t* value(const orloctl::Form& form, int depth);
    json_t* number(const orloctl::Form& form);
    json_t* named(const orloctl::Form& form);
    json_t* text(const orloctl::Form& form);
    json_t* object(const orloctl::Record& record, const char* key, int depth);
    json_t* array(const orloctl::Form& form, int depth);
    json_t* other_type();
    std::string characters(size_t size);
    void disturb_object(json_t* object, const orloctl::Record& record);
    void disturb_array(json_t* array, const orloctl::Form& form);

    std::minstd_rand random_;
};

} // namespace fuzz
