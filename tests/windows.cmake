# The tests of a Windows build, run under Wine by scripts/test-windows: the Windows platform layer
# and the unit tests that need no Linux-only parts (no network namespaces, D-Bus, /proc, the
# development service or the OpenVPN stand-in).
add_library(tavero_testsupport STATIC
    support/testenvironment.h support/testenvironment.cpp
    support/testmain.h
    support/testplatform.h support/testplatform.cpp
    support/maptranslator.h support/maptranslator.cpp
    support/fakeserverapi.h support/fakeserverapi.cpp
    support/messagecapture.h support/messagecapture.cpp
    support/concurrentfakeserverapi.h support/concurrentfakeserverapi.cpp
    support/managerfixture.h support/managerfixture.cpp
    support/pngbytes.h support/pngbytes.cpp
    support/serverlistmaker.h support/serverlistmaker.cpp
)
target_include_directories(tavero_testsupport PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(tavero_testsupport PUBLIC tavero_core Qt5::Test Qt5::Network)
tavero_warnings(tavero_testsupport)

add_library(tavero_guitestsupport STATIC
    support/fakebublemessageprovider.h
    support/fakeviewmanager.h
    support/fakeviewmanagerutils.h
    support/messageboxdriver.h support/messageboxdriver.cpp
)
target_link_libraries(tavero_guitestsupport PUBLIC tavero_testsupport tavero_gui)
tavero_warnings(tavero_guitestsupport)

tavero_add_test(NAME tst_windowsplatform SOURCES platform/tst_windowsplatform.cpp)
tavero_add_test(NAME tst_settings SOURCES app/tst_settings.cpp)
tavero_add_test(NAME tst_messagehandler SOURCES app/tst_messagehandler.cpp)
tavero_add_test(NAME tst_languagemaster
    SOURCES app/tst_languagemaster.cpp $<TARGET_OBJECTS:tavero_resources>)
tavero_add_test(NAME tst_replyparser SOURCES api/tst_replyparser.cpp)
tavero_add_test(NAME tst_endpoints SOURCES api/tst_endpoints.cpp)
tavero_add_test(NAME tst_ovpninputcheck SOURCES connection/tst_ovpninputcheck.cpp)
tavero_add_test(NAME tst_connectionkeeper SOURCES connection/tst_connectionkeeper.cpp)
tavero_add_test(NAME tst_killswitcher SOURCES connection/tst_killswitcher.cpp)
tavero_add_test(NAME tst_serverrowbuilder SOURCES manager/tst_serverrowbuilder.cpp)
tavero_add_test(NAME tst_vpnmanager
    SOURCES manager/tst_vpnmanager.cpp $<TARGET_OBJECTS:tavero_resources>)
tavero_add_test(NAME tst_clioptions SOURCES cli/tst_clioptions.cpp LIBS tavero_cli)
tavero_add_test(NAME tst_viewmanager
    SOURCES gui/tst_viewmanager.cpp $<TARGET_OBJECTS:tavero_resources>
    LIBS tavero_guitestsupport LABELS gui)
tavero_add_test(NAME tst_pagecontrollers
    SOURCES gui/tst_pagecontrollers.cpp $<TARGET_OBJECTS:tavero_resources>
    LIBS tavero_guitestsupport LABELS gui)
tavero_add_test(NAME tst_statuswidget SOURCES gui/tst_statuswidget.cpp
    LIBS tavero_guitestsupport tavero_resources LABELS gui)
tavero_add_test(NAME tst_settingsdialog SOURCES gui/tst_settingsdialog.cpp
    LIBS tavero_guitestsupport tavero_resources LABELS gui)
