<?php
// A server as PHP's SoapServer makes it, and the same with the changes that `scriptwells check` names ("mended").
// php -S 127.0.0.1:PORT soap_server.php, with QV_MENDED=1 for the second.
const NS = 'http://quorvane.example/dev/ns/ivarnel/scriptwells';

// A parameter arrives as an object with Name and Value.
function parameterList($parameters): array {
    if (is_object($parameters)) $parameters = $parameters->Parameter ?? [];
    return is_array($parameters) ? $parameters : [$parameters];
}

class Scripts {
    public function CreateUserSession($connection) { return 'php-1'; }
    public function CloseUserSession($usid) { return ''; }

    // "parameters.value" answers its parameter, "table" a table, anything else is a fault.
    public function Execute($usid, $script, $parameters = null) {
        if (strpos($script, '<Code>table</Code>') !== false) return $this->table();
        if (strpos($script, '<Code>parameters.value</Code>') === false) throw new SoapFault('Server', 'no such script');
        return $this->typed(parameterList($parameters)[0]->Value);
    }

    // Clients do not read xsd:float, and an xsd:int has 32 bits.
    private function typed($value) {
        $isBeyond = is_float($value) || (is_int($value) && abs($value) > 2147483647);
        return getenv('QV_MENDED') && $isBeyond ? new SoapVar($value, XSD_DOUBLE) : $value;
    }

    private function table() {
        $xml = '<ExecuteResult xsi:type="q1:RecordList"><h><s><c xsd:name="city" xsd:type="xsd:string"/>'
             . '<c xsd:name="people" xsd:type="xsd:int"/></s></h><d><w><v>Rome</v><v>2748109</v></w></d></ExecuteResult>';
        return new SoapVar($xml, XSD_ANYXML);
    }
}

// As clients read it. Also called for faults that end the script.
function mended(string $xml): string {
    $xml = str_replace(['SOAP-ENV', 'ns1'], ['soap', 'NS2'], $xml);
    header('Content-Length: ' . strlen($xml));
    return $xml;
}

if (getenv('QV_MENDED')) ob_start('mended');
$server = new SoapServer(null, ['uri' => NS]);
$server->setClass(Scripts::class);
$server->handle();
