# Copies each sample data file into the campaign directory unless the copy there is newer:
# a referee's saved character is never overwritten by an older sample.
file(MAKE_DIRECTORY ${TARGET})
file(GLOB files RELATIVE ${SOURCE} ${SOURCE}/*)
foreach(name IN LISTS files)
  # Only a sample strictly newer than the copy: IS_NEWER_THAN holds for equal times too, and a copy
  # made again under a test that is reading it would pull the file from under its feet.
  if(NOT EXISTS ${TARGET}/${name} OR NOT ${TARGET}/${name} IS_NEWER_THAN ${SOURCE}/${name})
    file(COPY ${SOURCE}/${name} DESTINATION ${TARGET})
  endif()
endforeach()
