#include "orientation.h"

#include "platform-test.h"

namespace vaultpad::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kPortrait = "ORIENTATION : PORTRAIT";
constexpr const char* kReversed = "ORIENTATION : PORTRAIT REVERSED";

class OrientationTest : public PlatformTest {
protected:
    OrientationTest() {
        platform().television.rotatorSupported = true;
        platform().television.sensorSupported = true;
    }
};

struct Panel : Named {
    int status;
    float sensor;
    int expected;
    Strings infos;
};

}  // namespace

class OrientationOf : public OrientationTest, public testing::WithParamInterface<Panel> {};

TEST_P(OrientationOf, FollowsTheRotatorAndThenTheSensor) {
    platform().television.rotatorStatus = GetParam().status;
    platform().television.sensorValue = GetParam().sensor;
    EXPECT_EQ(checkCurrentOrientation(), GetParam().expected);
    EXPECT_EQ(platform().infos(), GetParam().infos);
    EXPECT_THAT(platform().errors(), IsEmpty());
    EXPECT_EQ(platform().count("sensor_listener_stop"), 1);
    EXPECT_EQ(platform().count("sensor_destroy_listener"), 1);
}

INSTANTIATE_TEST_SUITE_P(, OrientationOf,
                         testing::Values(Panel{"Landscape", 1, 0, 0, {}}, Panel{"UnknownStatus", 7, 1, 0, {}},
                                         Panel{"NegativeStatus", -1, 3, 0, {}},
                                         Panel{"PortraitStatus", 0, 0, 1, {kPortrait}},
                                         Panel{"ReversedStatus", 2, 1, 3, {kReversed}},
                                         Panel{"SensorFourTurnsPortraitIntoReversed", 0, 4, 3, {kPortrait, kReversed}},
                                         Panel{"SensorTwoTurnsReversedIntoPortrait", 2, 2, 1, {kReversed, kPortrait}},
                                         Panel{"SensorAlone", 1, 2, 1, {kPortrait}},
                                         Panel{"SensorIsTruncated", 1, 4.99f, 3, {kReversed}},
                                         Panel{"SensorIsNotRounded", 0, 3.99f, 1, {kPortrait}}),
                         CaseName());

TEST_F(OrientationTest, WithoutARotatorIsLandscapeAndTheSensorIsNotAsked) {
    platform().television.rotatorSupported = false;
    platform().television.sensorValue = 4;
    EXPECT_EQ(checkCurrentOrientation(), 0);
    EXPECT_THAT(platform().journal(), ElementsAre("display_rotator_is_supported()"));
    EXPECT_THAT(platform().errors(), ElementsAre("display rotator is not supported"));
}

TEST_F(OrientationTest, RotatorThatCannotBeReadCountsAsLandscape) {
    platform().fail("display_rotator_get_status");
    platform().television.rotatorStatus = 0;
    EXPECT_EQ(checkCurrentOrientation(), 0);
}

TEST_F(OrientationTest, WithoutASensorTheRotatorDecides) {
    platform().television.sensorSupported = false;
    platform().television.rotatorStatus = 2;
    EXPECT_EQ(checkCurrentOrientation(), 3);
    EXPECT_THAT(platform().errors(), ElementsAre("SENSOR_AUTO_ROTATION is not supported"));
    EXPECT_EQ(platform().count("sensor_get_default_sensor"), 0);
}

struct SensorFailure : Named {
    const char* function;
    const char* message;
    bool stopped;
    bool destroyed;
};

class FailingSensor : public OrientationTest, public testing::WithParamInterface<SensorFailure> {};

TEST_P(FailingSensor, KeepsTheRotatorsResultAndCleansUpWhatWasMade) {
    const SensorFailure& failure = GetParam();
    platform().television.rotatorStatus = 0;
    platform().television.sensorValue = 4;
    platform().fail(failure.function, 1, -7);
    EXPECT_EQ(checkCurrentOrientation(), 1);
    EXPECT_THAT(platform().errors(), ElementsAre(failure.message));
    EXPECT_EQ(platform().count("sensor_listener_stop"), failure.stopped ? 1 : 0);
    EXPECT_EQ(platform().count("sensor_destroy_listener"), failure.destroyed ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    , FailingSensor,
    testing::Values(
        SensorFailure{"Support", "sensor_is_supported", "SENSOR_AUTO_ROTATION is not supported", false, false},
        SensorFailure{"Default", "sensor_get_default_sensor", "sensor_get_default_sensor failed (-7)", false, false},
        SensorFailure{"Listener", "sensor_create_listener", "sensor_create_listener failed (-7)", false, false},
        SensorFailure{"Start", "sensor_listener_start", "sensor_listener_start failed (-7)", false, true},
        SensorFailure{"Read", "sensor_listener_read_data", "sensor_listener_read_data failed (-7)", true, true}),
    CaseName());

}  // namespace vaultpad::test
