// The operations that are still to be built, by name.
#include "support/access_point.h"

namespace orlo::test {

namespace {

template <class Result>
struct Failure {
    Result value;
};

template <>
struct Failure<void> {};

// Calls an operation with zeros; whether it answers its failure value.
template <class Result, class... Arguments>
bool fails(Result (*operation)(Arguments...), const Failure<Result>& failure) {
    return operation(Arguments{}...) == failure.value;
}

template <class... Arguments>
bool fails(void (*operation)(Arguments...), const Failure<void>& /*none*/) {
    operation(Arguments{}...);
    return true;
}

} // namespace

using NotBuiltYet = AccessPoint;

TEST_F(NotBuiltYet, SaysSoInItsOwnNameAndDoesNothingElse) {
    Trace expected;
#define ORLO_NOT_BUILT(result, name, parameters, failure)                                          \
    EXPECT_TRUE((fails(ops.name, Failure<result>{failure})));                                      \
    expected.push_back("log 5/1 " #name ": not built yet");                                        \
    printf("not built yet: " #name "\n");
#include "ops/not_built_yet.def"
    EXPECT_EQ(door.trace(), expected);
    EXPECT_THAT(staged(), IsEmpty());
}

} // namespace orlo::test
