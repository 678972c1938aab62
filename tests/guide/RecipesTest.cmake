# Applies the changes of the guide's recipes to a copy of the tree, with no more classes than they
# speak of, builds it, and runs the tests of the classes that are changed or new. The whole tree takes
# long: scripts/check/recipes.sh.
# Needs SOURCE, WORK, CHANGES, PATCH and CXX.
file( REMOVE_RECURSE ${WORK} )
set( tree ${WORK}/tree )
set( classes EgressPerPortTable EvecTable FheiIveSizeReg IppePinfoLlr IvecTable LifProfileAttributes )

function( run )
   execute_process( COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY )
endfunction()

foreach( part CMakeLists.txt cmake codec include integrations platform python src tests )
   file( COPY ${SOURCE}/${part} DESTINATION ${tree} )
endforeach()
file( STRINGS ${tree}/include/Hardware/detail/Classes.def lines )
file( GLOB sources ${tree}/src/tables/*/*.cpp )
list( JOIN classes "|" kept )
list( FILTER lines INCLUDE REGEX "^#|\\( (${kept}) \\)" )
list( FILTER sources EXCLUDE REGEX "/(${kept})[.]cpp$" )
list( JOIN lines "\n" text )
file( WRITE ${tree}/include/Hardware/detail/Classes.def "${text}\n" )
file( REMOVE ${sources} )

run( ${PATCH} --strip=1 --directory=${tree} --input=${CHANGES} )
run( ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/recipes -B ${WORK}/build -G Ninja
     -DTREE=${tree} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-g0
     -DVORN_BUILD_TOOLS=OFF )
run( ${CMAKE_COMMAND} --build ${WORK}/build --target recipes )
run( ${WORK}/build/recipes )
