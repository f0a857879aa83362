# One function per kind of target, so that a new library, test or tool is a few lines.

set(LUMORA_SOURCE_ROOT "${PROJECT_SOURCE_DIR}")

# Where an installed Lumora keeps its libraries and design packages (below the prefix).
include(GNUInstallDirs)
set(LUMORA_INSTALL_LIBDIR "${CMAKE_INSTALL_LIBDIR}/lumora")

function(lumora_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
endfunction()

function(lumora_sanitize target)
  if(LUMORA_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
endfunction()

# Whether the Qt layers are on: a Qt target is silently left out of a build without them.
function(_lumora_skip_qt out is_qt)
  if(is_qt AND NOT LUMORA_GUI)
    set(${out} TRUE PARENT_SCOPE)
  else()
    set(${out} FALSE PARENT_SCOPE)
  endif()
endfunction()

# lumora_add_library(<name> [QT] [STATIC] SOURCES ... [DEPS ...])
# Shared by default: the class registry and the controls must exist once per process,
# also when design packages (shared libraries) link them.
function(lumora_add_library name)
  cmake_parse_arguments(ARG "QT;STATIC" "" "SOURCES;DEPS" ${ARGN})
  _lumora_skip_qt(skip ${ARG_QT})
  if(skip)
    return()
  endif()
  if(ARG_STATIC)
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  else()
    add_library(${name} SHARED ${ARG_SOURCES})
  endif()
  target_include_directories(${name} PUBLIC "${LUMORA_SOURCE_ROOT}")
  target_link_libraries(${name} PUBLIC ${ARG_DEPS})
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
  endif()
  lumora_warnings(${name})
  lumora_sanitize(${name})
  if(NOT ARG_STATIC)
    # Installed beside each other in the program's own library folder.
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${name} LIBRARY DESTINATION "${LUMORA_INSTALL_LIBDIR}")
  endif()
endfunction()

# lumora_add_package(<name> SOURCES ... [DEPS ...] [OUTPUT_DIRECTORY dir]): a design
# package, the folder's sources built into <name>.so (no "lib" prefix) in packages/ of the
# build tree, loaded at run time. It links the platform's shared libraries (DEPS, and the
# package runtime always), so its classes are the ones the program has.
# Symbols keep the default visibility, so that what headers define inline (type
# information of enumerations, for one) binds to the platform's single copy.
function(lumora_add_package name)
  cmake_parse_arguments(ARG "" "OUTPUT_DIRECTORY" "SOURCES;DEPS" ${ARGN})
  if(NOT LUMORA_GUI AND ARG_DEPS MATCHES "Qt6::|_vcl|_gui")
    return()
  endif()
  if(NOT ARG_OUTPUT_DIRECTORY)
    # A package Lumora ships: listed in the known-packages list (packages/CMakeLists.txt).
    set(ARG_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
    set_property(GLOBAL APPEND PROPERTY LUMORA_SHIPPED_PACKAGES ${name})
  endif()
  add_library(${name} MODULE ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${LUMORA_SOURCE_ROOT}")
  target_link_libraries(${name} PRIVATE lumora_packages ${ARG_DEPS})
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    SUFFIX ".so"
    LIBRARY_OUTPUT_DIRECTORY "${ARG_OUTPUT_DIRECTORY}")
  if(ARG_DEPS MATCHES "Qt6::|lumora_vcl")
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  lumora_warnings(${name})
  lumora_sanitize(${name})
  set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  # Only the packages Lumora ships are installed; the tests' own stay in the build tree.
  get_property(shipped GLOBAL PROPERTY LUMORA_SHIPPED_PACKAGES)
  if(name IN_LIST shipped)
    install(TARGETS ${name} LIBRARY DESTINATION "${LUMORA_INSTALL_LIBDIR}/packages")
  endif()
endfunction()

# lumora_add_tool(<name> [QT] SOURCES ... [DEPS ...]): a command-line program in bin/.
function(lumora_add_tool name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;DEPS" ${ARGN})
  _lumora_skip_qt(skip ${ARG_QT})
  if(skip)
    return()
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${LUMORA_SOURCE_ROOT}")
  target_link_libraries(${name} PRIVATE ${ARG_DEPS})
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PRIVATE Qt6::Widgets)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
  lumora_warnings(${name})
  lumora_sanitize(${name})
  set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/../${LUMORA_INSTALL_LIBDIR}")
  install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  lumora_version_info(${name})
endfunction()

# lumora_add_unit_test(<name> [GUI] SOURCES ... [DEPS ...])
# GUI tests get a QApplication on the offscreen platform. Tests that call GTEST_SKIP
# (the corpus is absent) show as skipped in CTest, never as passed.
function(lumora_add_unit_test name)
  cmake_parse_arguments(ARG "GUI" "TIMEOUT" "SOURCES;DEPS" ${ARGN})
  _lumora_skip_qt(skip ${ARG_GUI})
  if(skip OR NOT LUMORA_TESTS)
    return()
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${LUMORA_SOURCE_ROOT}")
  if(ARG_GUI)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PRIVATE ${ARG_DEPS} lumora_testsupport_gui GTest::gtest GTest::gmock Qt6::Widgets)
  else()
    target_link_libraries(${name} PRIVATE ${ARG_DEPS} lumora_testsupport GTest::gtest GTest::gmock)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  lumora_warnings(${name})
  lumora_sanitize(${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 600)
  endif()
  gtest_discover_tests(${name}
    DISCOVERY_TIMEOUT 120
    PROPERTIES
      SKIP_REGULAR_EXPRESSION "\\[  SKIPPED \\]"
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LUMORA_CORPUS=${LUMORA_CORPUS_DIR}"
      TIMEOUT ${ARG_TIMEOUT}
      LABELS "$<IF:$<BOOL:${ARG_GUI}>,gui,core>")
endfunction()

# lumora_add_benchmark(<name> [QT] SOURCES ... [DEPS ...]): Google Benchmark programs, never run by CTest.
function(lumora_add_benchmark name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;DEPS" ${ARGN})
  _lumora_skip_qt(skip ${ARG_QT})
  if(skip)
    return()
  endif()
  find_package(benchmark REQUIRED)
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${LUMORA_SOURCE_ROOT}")
  target_link_libraries(${name} PRIVATE ${ARG_DEPS} benchmark::benchmark)
  target_compile_definitions(${name} PRIVATE LUMORA_CORPUS_DIR="${LUMORA_CORPUS_DIR}")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench")
  lumora_warnings(${name})
  lumora_sanitize(${name})
endfunction()

# lumora_add_fuzzer(<name> SOURCES ... [DEPS ...]): libFuzzer targets, built with clang only.
function(lumora_add_fuzzer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${LUMORA_SOURCE_ROOT}")
  target_link_libraries(${name} PRIVATE ${ARG_DEPS})
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined -fno-omit-frame-pointer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzz")
endfunction()

# What the About box and the version reader show; a deployer sets these when building.
set(LUMORA_PRODUCT_NAME "Lumora" CACHE STRING "Product name recorded in the programs")
set(LUMORA_MAKER "Made by the Lumora developers" CACHE STRING "The maker's line of the About box")
set(LUMORA_FEEDBACK "lumora-feedback@example.org" CACHE STRING "The feedback address of the About box")

# lumora_version_info(<target> [DESCRIPTION <text>]): records the product name, the file
# version and a translation into the program, as an ELF section that foundation/joVerInfo
# reads from the file (see its header for the record's form).
function(lumora_version_info target)
  cmake_parse_arguments(ARG "" "DESCRIPTION" "" ${ARGN})
  if(NOT TARGET ${target})
    return()
  endif()
  set(version "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH}.0")
  set(table "\\\\StringFileInfo\\\\040904E4\\\\")
  set(lines
    "LumoraVersionInfo 1"
    "\\\\VarFileInfo\\\\Translation=0409 04E4"
    "${table}ProductName=${LUMORA_PRODUCT_NAME}"
    "${table}ProductVersion=${version}"
    "${table}FileVersion=${version}"
    "${table}FileDescription=${ARG_DESCRIPTION}"
    "${table}InternalName=${target}"
    "${table}CompanyName=${LUMORA_MAKER}"
    "${table}Feedback=${LUMORA_FEEDBACK}")
  set(body "")
  foreach(line IN LISTS lines)
    string(REPLACE "\"" "\\\"" line "${line}")
    string(APPEND body "    \"${line}\\n\"\n")
  endforeach()
  set(out "${CMAKE_CURRENT_BINARY_DIR}/${target}_VersionInfo.cpp")
  file(GENERATE OUTPUT "${out}" CONTENT
"// Generated by lumora_version_info: the version record of ${target}.
extern \"C\" __attribute__((used, section(\"lumora_verinfo\"))) const char lumora_version_record[] =
${body};
")
  target_sources(${target} PRIVATE "${out}")
endfunction()
