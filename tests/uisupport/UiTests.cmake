# The window-class tests: one binary per folder, like the others, but with
# the main of tests/uisupport, which makes a Qt application on the offscreen
# platform before any test runs. Failing pixel tests leave their images in
# Testing/Temporary next to LastTest.log.
set(VX_UI_TEST_SUPPORT_DIR ${CMAKE_CURRENT_LIST_DIR})

function(vx_add_ui_test_binary folder)
    file(GLOB test_src CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp)
    if(NOT test_src)
        return()
    endif()
    add_executable(test_${folder} ${test_src} ${VX_UI_TEST_SUPPORT_DIR}/uitest.cpp)
    target_include_directories(test_${folder} PRIVATE ${VX_UI_TEST_SUPPORT_DIR}/..)
    target_compile_definitions(test_${folder} PRIVATE
        VX_TEST_DATA_DIR="${VX_TEST_DATA_DIR}"
        VX_TEST_BINARY_DIR="${CMAKE_CURRENT_BINARY_DIR}"
        VX_TEST_OUTPUT_DIR="${CMAKE_BINARY_DIR}/Testing/Temporary")
    target_link_libraries(test_${folder} PRIVATE VxBase::vxbase-ui GTest::gtest GTest::gmock)
    gtest_discover_tests(test_${folder}
        DISCOVERY_MODE PRE_TEST
        PROPERTIES LABELS ${folder} ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endfunction()
