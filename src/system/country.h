// SPDX-License-Identifier: MIT
// The regulatory country.
#pragma once

namespace orlo {

// The configured country code, up to 10 characters, which is also remembered; NULL when it cannot
// be read. The text is good until the country is read or applied again.
const char* read_country_code();

} // namespace orlo
