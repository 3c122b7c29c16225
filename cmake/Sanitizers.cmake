# QV_SANITIZE instruments every target, so that no library mixes both kinds of code.
if(QV_SANITIZE)
  # The JavaScript engine is built without RTTI and shares template code with us, which the vptr check reports as an error.
  add_compile_options(-fsanitize=${QV_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QV_SANITIZE})
endif()
