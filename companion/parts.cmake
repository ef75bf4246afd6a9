# The parts of the companion that know no platform.
file(GLOB companion_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/dialog/*.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/server/*.cpp)
add_library(nqp_companion STATIC ${companion_sources})
target_include_directories(nqp_companion PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(nqp_companion PUBLIC nqp_core nqp_forms)
