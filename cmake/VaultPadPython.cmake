# The Python that draws the resources and runs the tests: the system's own, because the system's packages of Python modules
# are for it and no other, and the first one on PATH may be another. -D VAULTPAD_SYSTEM_PYTHON=... names one elsewhere.
find_program(VAULTPAD_SYSTEM_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
set(Python3_EXECUTABLE ${VAULTPAD_SYSTEM_PYTHON})
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)

execute_process(COMMAND ${Python3_EXECUTABLE} -c "from PIL import TgaImagePlugin" RESULT_VARIABLE without_pillow
                OUTPUT_QUIET ERROR_QUIET)
if(without_pillow)
    message(FATAL_ERROR "${Python3_EXECUTABLE} has no Pillow, which stores the images; install the package python3-pil "
                        "(python3-pillow on RPM systems), or name a Python that has it with -D VAULTPAD_SYSTEM_PYTHON=")
endif()
