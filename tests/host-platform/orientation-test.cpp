/* The interface's direction, the panel's motor and the sensor. */
#include <gtest/gtest.h>
#include <vaultpad-platform/display-rotator.h>
#include <vaultpad-platform/sensor.h>
#include <vaultpad-platform/ui-orientation.h>

#include "television-fixture.h"

namespace {

constexpr int kAutoRotation = VAULTPAD_SENSOR_AUTO_ROTATION;

class OrientationTest : public TelevisionFixture {};

class SensorTest : public TelevisionFixture {
protected:
    void SetUp() override {
        useTelevision("[orientation]\nsensor=portrait\n");
        ASSERT_EQ(sensor_get_default_sensor(kAutoRotation, &sensor_), 0);
        ASSERT_EQ(sensor_create_listener(sensor_, &listener_), 0);
    }
    void TearDown() override { sensor_destroy_listener(listener_); }

    sensor_h sensor_ = nullptr;
    sensor_listener_h listener_ = nullptr;
    sensor_event_s event_ = {};
};

TEST_F(OrientationTest, IsMirroredWhenTheKeyFileSaysSo) {
    EXPECT_EQ(ua_UI_orientation_get(), 0);
    useTelevision("[orientation]\nmirrored=true\n");
    EXPECT_NE(ua_UI_orientation_get(), 0);
}

TEST_F(OrientationTest, HasNoRotatorAndNoSensorByDefault) {
    EXPECT_FALSE(display_rotator_is_supported());
    int status = 77;
    EXPECT_NE(display_rotator_get_status(&status), 0);
    EXPECT_EQ(status, 77);
    bool supported = true;
    EXPECT_EQ(sensor_is_supported(kAutoRotation, &supported), 0);
    EXPECT_FALSE(supported);
    sensor_h sensor = nullptr;
    EXPECT_NE(sensor_get_default_sensor(kAutoRotation, &sensor), 0);
    EXPECT_EQ(sensor, nullptr);
}

TEST_F(OrientationTest, ReadsTheRotatorsPosition) {
    int status = -1;
    useTelevision("[orientation]\nrotator=portrait\n");
    EXPECT_TRUE(display_rotator_is_supported());
    EXPECT_EQ(display_rotator_get_status(&status), 0);
    EXPECT_EQ(status, VAULTPAD_ROTATOR_PORTRAIT);
    useTelevision("[orientation]\nrotator=portrait-reversed\n");
    EXPECT_EQ(display_rotator_get_status(&status), 0);
    EXPECT_EQ(status, VAULTPAD_ROTATOR_PORTRAIT_REVERSED);
    useTelevision("[orientation]\nrotator=landscape\n");
    EXPECT_EQ(display_rotator_get_status(&status), 0);
    EXPECT_NE(status, VAULTPAD_ROTATOR_PORTRAIT);
    EXPECT_NE(status, VAULTPAD_ROTATOR_PORTRAIT_REVERSED);
    EXPECT_NE(display_rotator_get_status(nullptr), 0);
}

TEST_F(SensorTest, GivesTheReadingOfEachPosition) {
    ASSERT_EQ(sensor_listener_start(listener_), 0);
    const struct {
        const char* position;
        float value;
    } readings[] = {{"landscape", 1}, {"portrait", 2}, {"portrait-reversed", 4}};
    for (const auto& reading : readings) {
        useTelevision(std::string("[orientation]\nsensor=") + reading.position + "\n");
        ASSERT_EQ(sensor_listener_read_data(listener_, &event_), 0);
        EXPECT_EQ(event_.value_count, 1);
        EXPECT_EQ(event_.values[0], reading.value);
        EXPECT_GT(event_.timestamp, 0u);
    }
}

TEST_F(SensorTest, FailsToReadBeforeStartAndAfterStop) {
    EXPECT_NE(sensor_listener_read_data(listener_, &event_), 0);
    EXPECT_NE(sensor_listener_stop(listener_), 0);
    EXPECT_EQ(sensor_listener_start(listener_), 0);
    EXPECT_EQ(sensor_listener_read_data(listener_, &event_), 0);
    EXPECT_EQ(sensor_listener_stop(listener_), 0);
    EXPECT_NE(sensor_listener_read_data(listener_, &event_), 0);
}

TEST_F(SensorTest, SupportsNoOtherSensor) {
    bool supported = true;
    EXPECT_EQ(sensor_is_supported(kAutoRotation + 1, &supported), 0);
    EXPECT_FALSE(supported);
    EXPECT_NE(sensor_get_default_sensor(kAutoRotation + 1, &sensor_), 0);
}

TEST_F(SensorTest, RefusesNullStaleAndForeignHandles) {
    sensor_listener_h other = nullptr;
    EXPECT_NE(sensor_create_listener(nullptr, &other), 0);
    EXPECT_NE(sensor_create_listener(listener_, &other), 0);
    EXPECT_NE(sensor_create_listener(sensor_, nullptr), 0);
    EXPECT_NE(sensor_is_supported(kAutoRotation, nullptr), 0);
    EXPECT_NE(sensor_get_default_sensor(kAutoRotation, nullptr), 0);
    ASSERT_EQ(sensor_create_listener(sensor_, &other), 0);
    EXPECT_EQ(sensor_listener_start(other), 0);
    EXPECT_NE(sensor_listener_read_data(other, nullptr), 0);
    EXPECT_EQ(sensor_destroy_listener(other), 0);
    for (sensor_listener_h bad : {static_cast<void*>(nullptr), other, sensor_}) {
        EXPECT_NE(sensor_listener_start(bad), 0);
        EXPECT_NE(sensor_listener_read_data(bad, &event_), 0);
        EXPECT_NE(sensor_listener_stop(bad), 0);
        EXPECT_NE(sensor_destroy_listener(bad), 0);
    }
}

}  // namespace
