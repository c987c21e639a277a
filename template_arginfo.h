/* This is a generated file, edit the .stub.php file instead.
 * Stub hash: c3adc4f5f210d2eb54556278b9d1ba61b732df10 */

ZEND_BEGIN_ARG_WITH_RETURN_TYPE_INFO_EX(arginfo_template, 0, 2, IS_STRING, 1)
	ZEND_ARG_TYPE_INFO(0, fileName, IS_STRING, 0)
	ZEND_ARG_TYPE_INFO(0, userData, IS_ARRAY, 0)
	ZEND_ARG_TYPE_INFO_WITH_DEFAULT_VALUE(0, string_mode, _IS_BOOL, 0, "false")
ZEND_END_ARG_INFO()

ZEND_FUNCTION(template);

static const zend_function_entry ext_functions[] = {
	ZEND_FE(template, arginfo_template)
	ZEND_FE_END
};
