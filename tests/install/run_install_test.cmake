# Installs the build tree into a scratch prefix, then builds tests/install/consumer.cpp against it
# twice: with find_package(pokermath) and with pkg-config, using CXX_COMPILER, the compiler that built
# the library (GCC and Clang link different OpenMP runtimes).
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run_step)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${out}\n${err}")
  endif()
  set(step_output "${out}" PARENT_SCOPE)
endfunction()

run_step(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run_step(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${prefix}
         -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
run_step(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run_step(${WORK_DIR}/build/consumer)
if(NOT step_output MATCHES "^1 RoyalFlush")
  message(FATAL_ERROR "unexpected consumer output: ${step_output}")
endif()

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  file(GLOB pc_dirs ${prefix}/lib*/pkgconfig ${prefix}/lib/*/pkgconfig)
  set(ENV{PKG_CONFIG_PATH} "${pc_dirs}")
  run_step(${PKG_CONFIG} --cflags --libs pokermath)
  string(STRIP "${step_output}" flags)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run_step(${CXX_COMPILER} ${SOURCE_DIR}/consumer.cpp -o ${WORK_DIR}/consumer_pc ${flags})
  run_step(${WORK_DIR}/consumer_pc)
endif()
