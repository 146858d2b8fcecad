# Copies each sample data file into the campaign directory unless the copy there is newer:
# a referee's saved character is never overwritten by an older sample.
file(MAKE_DIRECTORY ${TARGET})
file(GLOB files RELATIVE ${SOURCE} ${SOURCE}/*)
foreach(name IN LISTS files)
  if(NOT EXISTS ${TARGET}/${name} OR ${SOURCE}/${name} IS_NEWER_THAN ${TARGET}/${name})
    file(COPY ${SOURCE}/${name} DESTINATION ${TARGET})
  endif()
endforeach()
