# The tests of a Windows build, run under Wine by scripts/test-windows: the Windows platform layer
# and the tests that need no Linux-only parts (network namespaces, D-Bus, /proc, the development
# service, the OpenVPN stand-in).
add_library(tavero_testsupport STATIC support/testenvironment.cpp support/testplatform.cpp
    support/messagecapture.cpp support/managerfixture.cpp support/serverlistmaker.cpp)
target_include_directories(tavero_testsupport PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(tavero_testsupport PUBLIC tavero_rows Qt5::Test Qt5::Network)
add_library(tavero_guitestsupport STATIC support/messageboxdriver.cpp)
target_link_libraries(tavero_guitestsupport PUBLIC tavero_testsupport tavero_gui)

foreach(test platform/tst_windowsplatform app/tst_messagehandler api/tst_serviceinput
        connection/tst_ovpninputcheck connection/tst_connectionkeeper)
    get_filename_component(name ${test} NAME)
    tavero_add_test(NAME ${name} SOURCES ${test}.cpp)
endforeach()
tavero_add_test(NAME tst_languagemaster
    SOURCES app/tst_languagemaster.cpp $<TARGET_OBJECTS:tavero_resources>)
foreach(test viewmanager pagecontrollers)
    tavero_add_test(NAME tst_${test} SOURCES gui/tst_${test}.cpp $<TARGET_OBJECTS:tavero_resources>
        LIBS tavero_guitestsupport LABELS gui)
endforeach()
