// Runs the tests that draw: they need a QGuiApplication, but no screen.
#include <gtest/gtest.h>

#include <QGuiApplication>

/// For builds with the address sanitizer: a picture too large for the memory is a null image, as
/// without it.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
